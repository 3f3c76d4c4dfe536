#pragma once

#include "tarnlet/bsdl.h"

#include <cstddef>
#include <cstdint>
#include <string>

// One function per kind of input. Each gives back all that it took, so that an input leaves nothing
// for the next one but what the library keeps for the thread.
struct FuzzTarget {
    const char *name;
    void (*run)(const uint8_t *data, size_t size);
};

void fuzz_bsdl(const uint8_t *data, size_t size);
void fuzz_isc_aio(const uint8_t *data, size_t size);
void fuzz_prg(const uint8_t *data, size_t size);
void fuzz_package(const uint8_t *data, size_t size);
void fuzz_calls(const uint8_t *data, size_t size);
void fuzz_memory(const uint8_t *data, size_t size);
void fuzz_symbols(const uint8_t *data, size_t size);

constexpr FuzzTarget FUZZ_TARGETS[] = {
    {"bsdl", fuzz_bsdl},       {"isc_aio", fuzz_isc_aio}, {"prg", fuzz_prg},
    {"package", fuzz_package}, {"calls", fuzz_calls},     {"memory", fuzz_memory},
    {"symbols", fuzz_symbols},
};

// A text as a file in memory, for the exports that take a path.
class MemoryFile
{
  public:
    explicit MemoryFile(const char *name);
    const std::string &path() const { return path_; }
    void write(const void *data, size_t size);

  private:
    int handle_;
    std::string path_;
};

enum Steps : uint32_t {
    CHECK = 1,
    CHECK_ISC = 2,
    CHECK_AIO = 4,
    CHECK_PRG = 8,
};

// Reads the file, asks everything, runs the checks, asks everything again, has the EBST file
// written. What varies beside the text (flags of the reading, how the handle is given back) is
// drawn from `variant`.
void exercise(const char *path, GSList *package_dirs, uint32_t steps, uint32_t variant);

// The context of all readings: its sink reads the texts of messages and what belongs to them.
BsdlContext *fuzz_context();

// A number that depends on all bytes of an input.
uint32_t fingerprint(const uint8_t *data, size_t size);

// Runs `step`; false when the library ended the process in it for one of the two reasons that it
// may have. Any other exit is a fault.
bool survives(void (*step)(void *), void *data);
