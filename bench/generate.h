#pragma once

#include <cstdint>
#include <string>

/**
 * Valid descriptions of a chosen shape and size, laid out as makers lay them out: one row of
 * a table a line, each a string of its own, joined by '&'. The same arguments always give
 * the same text.
 */
enum class Shape {
    SCALAR_PORTS,       ///< `size` boundary cells on as many single-bit ports
    ONE_VECTOR,         ///< one bit_vector of `size` bits, a cell for each
    INSTRUCTIONS,       ///< `size` instructions, ten to a user register
    DIFFERENTIAL_PAIRS, ///< `size` pairs of ports in one group list, a cell for each pair
};

struct ShapeName {
    Shape shape;
    const char *name;
};

inline constexpr ShapeName shape_names[] = {
    {Shape::SCALAR_PORTS, "scalar"},
    {Shape::ONE_VECTOR, "vector"},
    {Shape::INSTRUCTIONS, "instructions"},
    {Shape::DIFFERENTIAL_PAIRS, "pairs"},
};

/** A description of `entity`; `size` is at least 1. */
std::string generate_description(Shape shape, uint32_t size, const std::string &entity);

/** File `index` of a folder of small descriptions of all shapes, 5 to 50 KB each. */
std::string generate_small_description(uint32_t index);

bool write_text(const std::string &path, const std::string &text);

/** Writes `count` small descriptions, part_0.bsd and on, into `folder`, which is made if absent. */
bool generate_folder(const std::string &folder, uint32_t count);
