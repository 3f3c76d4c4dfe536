#pragma once

#include "boundary/boundary.h"
#include "support/description.h"

// A valid description but for its ports and cells: the test access port, the ports named as in
// "A:in" or "D:in(0 to 1)", and the rows of the boundary register.
support::Description with_cells(support::Issue issue, const std::vector<std::string> &ports,
                                const std::vector<std::string> &rows, long length);

// As many cells as there are rows.
support::Description with_cells(const std::vector<std::string> &ports,
                                const std::vector<std::string> &rows);

// The checks that come before that of the boundary register, whose messages are dropped.
void check_up_to_cells(support::Reading &reading);

// A table of rows and what its check finds.
struct CellCase {
    const char *name;
    std::vector<std::string> rows;
    // Whole and in order. Under `strict` the warnings among them are errors of verbosity 2. The
    // result is 100 with an error among them.
    support::ExpectedMessages messages = {};
    // By default those that the rows name: A, C in; Y, W, V, U out; B inout; Q, R buffer.
    std::vector<std::string> ports = {};
    long length = -1; // by default the number of rows
    support::Issue issue = support::Issue::BSDL_2001;
    std::string more_opcodes = {};
    std::string pairs = {}; // of differential ports
    bool aio = false;       // as if there were statements of IEEE 1149.6
    bool lenient = true, strict = true;
};

void expect_findings(const CellCase &row);

// A few rows in memory of their own, which take the place of a description's: without ports, and
// all of cell 0 until the test fills them.
struct RowsOfCells {
    static constexpr uint32_t MOST = 7;
    CellEntry entries[MOST] = {};
    CellSpec specs[MOST] = {};
    DisableSpec disables[MOST] = {}; // given to entries by the test
    GSList links[MOST] = {};
    BoundaryRegister record = {};
    uint32_t count;

    explicit RowsOfCells(uint32_t count);
    RowsOfCells(const RowsOfCells &) = delete;
    RowsOfCells &operator=(const RowsOfCells &) = delete;
};

// ----------------------------------------------------------- messages that several tests expect

// What the type of a port asks of its cell.
support::Expected type_rule(const std::string &type, uint32_t number, const std::string &port,
                            const std::string &rule);
extern const char IN_FUNCTIONS[];

support::Expected two_drivers(uint32_t number, const char *function, uint32_t other,
                              const char *other_function, const std::string &port,
                              const std::string &ending);
support::Expected no_driver(const std::string &port, const std::string &function);
support::Expected backed_by_pair(uint32_t number, const std::string &port);
support::Expected no_input(support::Level level, uint32_t number, const std::string &function,
                           const std::string &port);
support::Expected wrong_disable_value(const std::string &value, uint32_t number,
                                      const std::string &function, const std::string &safe_bit,
                                      uint32_t control = 0,
                                      const std::string &control_function = "CONTROL");
support::Expected controls_nothing(uint32_t number, const std::string &function);
support::Expected not_control(uint32_t number, const std::string &function, int32_t ccell);
