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

    std::string text() const;
    support::Description description() const;
    support::Description description(support::Description base) const;
    // The line of the description on which a part stands.
    int line(Part part) const;

  private:
    std::array<std::string, PART_COUNT> texts_;
    std::vector<Part> order_;
};

// Instructions and registers as Family::description() has them, to be replaced in part.
extern const char *const OPCODES;
extern const char *const REGISTERS;

// A reading that has passed both checks.
void expect_passed(support::Reading &reading);
// Goes to the first flow of a procedure by name.
void open_flow(Bsdl *handle, const char *procedure, const char *data_name = nullptr);

// All that the queries give, one record a line, indented by its depth.
std::string tree_text(Bsdl *handle);
// One field's expression; "-" for none.
std::string expression_text(const IscExpression *expression);

} // namespace isc_family
