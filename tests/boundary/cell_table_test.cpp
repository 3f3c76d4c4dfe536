#include "cells.h"

#include "frame/texts.h"

using namespace support;

namespace
{

using support::Reading;

constexpr unsigned NO_ROW = ~0u;

// All that the queries tell of a row, on one line.
std::string told(CellEntry *entry)
{
    std::string text = std::to_string(bsdlGetCellNumber(entry)) + " " + bsdlGetCellName(entry) +
                       " " + (bsdlGetCellPort(entry) ? port_text(bsdlGetCellPort(entry)) : "*");
    for (int value :
         {bsdlGetCellFunction(entry), bsdlGetCellSafeBit(entry), bsdlGetCellControlCell(entry),
          bsdlGetCellDisableValue(entry), bsdlGetCellDisableResult(entry)})
        text += " " + std::to_string(value);
    return text;
}

struct Row {
    std::string text;
    std::string told;
    ExpectedMessages messages = {};
    Issue issue = Issue::BSDL_2001;
};

const Row rows[] = {
    {"7 (BC_1, A, input, X)", "7 BC_1 A 1 3 -1 0 0"},
    {"7 (bc_1, d(1), Output2, 0)", "7 bc_1 d(1) 2 1 -1 0 0"},
    {"7 (MY_CELL, Y, output3, 1, 3, 1, WEAK0)", "7 MY_CELL Y 3 2 3 2 2"},
    {"7 (BC_1, *, control, 0)", "7 BC_1 * 4 1 -1 0 0"},
    {"7 (BC_1, *, controlr, 1)", "7 BC_1 * 5 2 -1 0 0"},
    {"7 (BC_1, *, internal, X)", "7 BC_1 * 6 3 -1 0 0"},
    {"7 (BC_4, A, clock, X)", "7 BC_4 A 7 3 -1 0 0"},
    {"7 (BC_7, B, bidir, X, 7, 0, pull1)", "7 BC_7 B 8 3 7 1 5"},
    {"7 (BC_4, B, observe_only, X)", "7 BC_4 B 11 3 -1 0 0"},
    {"7 (BC_1, Y, output3, X, +0, 0, WEAK1)", "7 BC_1 Y 3 3 0 1 3"},
    {"7 (BC_1, Y, output3, X, 00, 01, PULL0)", "7 BC_1 Y 3 3 0 2 4"},
    {"7 (BC_1, Y, output3, X, 0, 0, KEEPER)", "7 BC_1 Y 3 3 0 1 6"},
    {"7 (BC_1, Y, output3, X, 0, 0, KEEPER)",
     "7 BC_1 Y 3 3 0 1 6",
     {{ERROR, "\t<disable result> KEEPER is only allowed in BSDL2001", 1}},
     Issue::BSDL_1994},
    {"7 (BC_1, A, input, 2)", "7 BC_1 A 1 0 -1 0 0", {{ERROR, "safe_bit must be X, 0, 1", 1}}},
    {"7 (BC_1, Y, output3, X, 0, 2, Z)",
     "7 BC_1 Y 3 3 0 0 1",
     {{ERROR, "disable_value must be X, 0, 1", 1}}},
    {"7 (BC_1, Y, output3, X, -1, 0, Z)",
     "7 BC_1 Y 3 3 -1 1 1",
     {{ERROR, "cell number must be positive", 1}}},
    {"99999999999 (BC_1, A, input, X)", "2147483647 BC_1 A 1 3 -1 0 0"},
};

TEST(CellTable, StoresRow)
{
    for (const Row &row : rows) {
        SCOPED_TRACE(row.text);
        Description description(row.issue);
        description.with(BOUNDARY_REGISTER, attribute("BOUNDARY_REGISTER", row.text));
        Reading reading(description);
        ASSERT_TRUE(reading.handle());
        EXPECT_EQ(0, bsdlGetNumErrors(reading));
        expect_messages(errors_and_warnings(reading.messages()), row.messages);
        auto entries = all_of(reading.handle(), bsdlGetFirstCellEntry, bsdlGetNextCellEntry);
        ASSERT_EQ(1u, entries.size());
        EXPECT_EQ(row.told, told(entries[0]));
        EXPECT_EQ(nullptr, bsdlGetCellEbstName(entries[0]));
    }
}

struct Merged {
    const char *name;
    std::vector<unsigned> numbers;
    std::vector<unsigned> merged_with; // positions
};

const Merged merged[] = {
    {"falling", {3, 2, 1, 0}, {NO_ROW, NO_ROW, NO_ROW, NO_ROW}},
    {"falling, neighbours", {3, 2, 2, 0}, {NO_ROW, NO_ROW, 1, NO_ROW}},
    {"rising, three of one number", {1, 1, 1, 2}, {NO_ROW, 0, 0, NO_ROW}},
    {"three of one number at the end", {2, 1, 1, 1}, {NO_ROW, NO_ROW, 1, 1}},
    {"pair before the turn", {1, 1, 0, 5}, {NO_ROW, 0, NO_ROW, NO_ROW}},
    {"apart", {1, 2, 1, 0, 1}, {NO_ROW, NO_ROW, 0, NO_ROW, 0}},
    {"one row", {4}, {NO_ROW}},
};

TEST(CellTable, LaterEntryOfANumberIsLinkedToTheFirst)
{
    for (const Merged &table : merged) {
        SCOPED_TRACE(table.name);
        std::vector<std::string> texts;
        for (unsigned number : table.numbers)
            texts.push_back(std::to_string(number) + " (BC_1, A, input, X)");
        Reading reading(with_cells({"A:in"}, texts));
        auto entries = all_of(reading.handle(), bsdlGetFirstCellEntry, bsdlGetNextCellEntry);
        ASSERT_EQ(table.numbers.size(), entries.size());
        for (size_t i = 0; i < entries.size(); i++) {
            const CellEntry *other = entries[i]->merged_with;
            EXPECT_EQ(table.merged_with[i], other ? other->position : NO_ROW) << "row " << i;
        }
    }
}

TEST(CellTable, IterationStaysAtTheEnd)
{
    Reading reading(with_cells({"A:in"}, {"0 (BC_1, A, input, X)", "1 (BC_1, A, input, X)"}));
    EXPECT_EQ(1, bsdlGetCellNumber(bsdlGetNextCellEntry(reading))) << "cursor is 0 after reading";
    EXPECT_EQ(0, bsdlGetCellNumber(bsdlGetFirstCellEntry(reading)));
    EXPECT_EQ(1, bsdlGetCellNumber(bsdlGetNextCellEntry(reading)));
    for (int i = 0; i < 3; i++)
        EXPECT_EQ(nullptr, bsdlGetNextCellEntry(reading));
}

TEST(CellTable, EntriesOfAPortInTableOrder)
{
    Reading reading(
        with_cells({"A:in", "D:in(0 to 1)"},
                   {"3 (BC_1, D(0), input, X)", "2 (BC_1, *, internal, X)", "1 (BC_1, d, input, X)",
                    "0 (BC_1, D(1), input, X)", "3 (BC_1, d(0), observe_only, X)"}));
    auto port = [&](const char *name, int32_t subscripted, int32_t subscript) {
        return PortId{const_cast<char *>(model_name(reading, name)), subscripted, subscript};
    };
    auto bits = [&](const PortId &wanted) {
        std::vector<uint32_t> found;
        for (CellEntry *cell = first_cell_of_bit(reading, &wanted); cell;
             cell = next_cell_of_bit(reading, cell))
            found.push_back(cell->position);
        return found;
    };
    EXPECT_EQ((std::vector<uint32_t>{0, 2, 4}), bits(port("D", 1, 0)));
    EXPECT_EQ((std::vector<uint32_t>{0, 2, 4}), bits(port("D", 0, 0)));
    EXPECT_EQ((std::vector<uint32_t>{3}), bits(port("D", 1, 1)));
    EXPECT_EQ((std::vector<uint32_t>{}), bits(port("A", 0, 0)));

    const PortId scalar = port("D", 0, 0);
    const PortId bit = port("D", 1, 0);
    EXPECT_EQ(2u, first_cell_of_port(reading, &scalar)->position);
    EXPECT_EQ(0u, first_cell_of_port(reading, &bit)->position);
    EXPECT_EQ(0u, find_cell(reading, 3)->position);
    EXPECT_EQ(nullptr, find_cell(reading, 4));
}

struct Statements {
    const char *name;
    Issue issue;
    Statement statement;
    std::string text;
    ExpectedMessages messages; // of these statements
    int32_t length = 8;
    size_t rows = 8;
};

const Expected CELLS = {INFORMATION, "\tBoundary cells statement passed", 3};
const Expected LENGTH = {INFORMATION, "\tBoundary scan register length statement passed", 3};
const Expected TABLE = {INFORMATION, "\tBoundary scan register statement passed", 3};

Expected skipped(const std::string &what)
{
    return {ERROR, "Skipping " + what + " due to errors", 1};
}

const Statements statements[] = {
    {"cells without a value",
     Issue::BSDL_1990,
     BOUNDARY_CELLS,
     "attribute BOUNDARY_CELLS of DEV :",
     {CELLS, LENGTH, TABLE}},
    {"cells",
     Issue::BSDL_1990,
     BOUNDARY_CELLS,
     attribute("BOUNDARY_CELLS", "BC_1, BC_2"),
     {CELLS, LENGTH, TABLE}},
    {"cells with an error",
     Issue::BSDL_1990,
     BOUNDARY_CELLS,
     "attribute BOUNDARY_CELLS of DEV : entity is BAD;",
     {skipped("boundary_cells"), LENGTH, TABLE}},
    {"table with an error",
     Issue::BSDL_2001,
     BOUNDARY_REGISTER,
     "attribute BOUNDARY_REGISTER of DEV : entity is BAD;",
     {LENGTH, skipped("boundary_register")},
     8,
     0},
    {"no length", Issue::BSDL_2001, BOUNDARY_LENGTH, "", {}, 0, 0},
};

TEST(CellTable, Statements)
{
    for (const Statements &row : statements) {
        SCOPED_TRACE(row.name);
        Reading reading(Description(row.issue).with(row.statement, row.text));
        ASSERT_TRUE(reading.handle());
        expect_messages(picked(reading.messages(),
                               [](const Message &message) {
                                   return message.text.find("oundary") != std::string::npos;
                               }),
                        row.messages);
        EXPECT_EQ(row.length, bsdlGetBSRLength(reading));
        EXPECT_EQ(row.rows,
                  all_of(reading.handle(), bsdlGetFirstCellEntry, bsdlGetNextCellEntry).size());
    }
}

TEST(CellTable, NullEntry)
{
    EXPECT_EQ(0, bsdlGetBSRLength(nullptr));
    EXPECT_EQ(nullptr, bsdlGetFirstCellEntry(nullptr));
    EXPECT_EQ(nullptr, bsdlGetNextCellEntry(nullptr));
    EXPECT_EQ(-1, bsdlGetCellNumber(nullptr));
    EXPECT_EQ(-1, bsdlGetCellControlCell(nullptr));
    EXPECT_EQ(nullptr, bsdlGetCellName(nullptr));
    EXPECT_EQ(nullptr, bsdlGetCellEbstName(nullptr));
    EXPECT_EQ(nullptr, bsdlGetCellPort(nullptr));
    for (auto *query : {bsdlGetCellFunction, bsdlGetCellSafeBit, bsdlGetCellDisableValue,
                        bsdlGetCellDisableResult})
        EXPECT_EQ(0, query(nullptr));
}

} // namespace
