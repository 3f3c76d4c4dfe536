#pragma once

#include "support/description.h"

#include <string>

// The valid description of the tests with one family of IEEE 1532 statements, which passes
// bsdl_check() and bsdl_check_isc(). Its instruction MINE selects the register MINE of 8 bits.
namespace isc_family
{

// In the order of the standard.
enum Part {
    ISC_CONFORMANCE,
    PIN_BEHAVIOR,
    FIXED_PINS,
    STATUS,
    BLANK_USERCODE,
    SECURITY,
    FLOW,
    PROCEDURE,
    ACTION,
    ILLEGAL_EXIT,
    ISC_WARNING,
    PART_COUNT,
};

// Of the attributes.
extern const char *const NAMES[PART_COUNT];

class Family
{
  public:
    Family();

    // The value of the statement's string; with_text() takes a whole statement, "" leaves it out.
    Family &with(Part part, const std::string &value);
    Family &with_text(Part part, const std::string &text);
    Family &without(Part part) { return with_text(part, ""); }
    // Another order of the parts, those not named left out.
    Family &in_order(const std::vector<Part> &order);
    // One flow, and procedures and an action that run it.
    Family &with_flow(const std::string &flow);
    // Another name, or any other text, in INSTRUCTION_OPCODE and REGISTER_ACCESS, where it comes
    // first.
    Family &renamed(const std::string &from, const std::string &to);

    std::string text() const;
    support::Description description() const;
    // The line of the description on which a part stands.
    int line(Part part) const;

  private:
    std::array<std::string, PART_COUNT> texts_;
    std::vector<Part> order_;
    std::string opcodes_;
    std::string registers_;
};

// A family that passes bsdl_check(), and all that a check of its own says then, a line each: errors
// of verbosity 2, which make it give 100.
struct CheckRow {
    const char *name;
    Family family;
    std::string errors = "";
};
void expect_rows(int32_t (*check)(Bsdl *), const std::vector<CheckRow> &rows);

// A reading that has passed both checks.
void expect_passed(support::Reading &reading);
// Goes to the first flow of a procedure by name.
void open_flow(Bsdl *handle, const char *procedure, const char *data_name = nullptr);

// The fields of an activity: width and data; expressions with all their values, "-" for none.
std::string update_text(const IscUpdateField *field);
std::string capture_text(const IscCaptureField *field);
// All that the queries give, one record a line, indented by its depth; what a flow holds is shown
// where it first comes.
std::string tree_text(Bsdl *handle);

} // namespace isc_family
