// The rules between cells, and between cells and ports, as walks over the table, node by node: the
// plainest statement of them, which the fast searches are compared with on random tables.

#include "cells.h"

#include "frame/lookup.h"
#include "frame/texts.h"
#include "ports/ports.h"

#include <random>

using namespace support;

namespace
{

constexpr int TABLES = 3000;

using Functions = std::initializer_list<int32_t>;

class Random
{
  public:
    explicit Random(unsigned seed) : generator_(seed) {}
    int32_t below(int32_t bound) { return static_cast<int32_t>(generator_() % bound); }
    int32_t one_of(Functions values) { return values.begin()[below(values.size())]; }

  private:
    std::mt19937 generator_;
};

const CellEntry *entry_of(const GSList *node) { return static_cast<const CellEntry *>(node->data); }

bool has_function(const CellEntry *cell, Functions functions)
{
    for (int32_t function : functions)
        if (cell && cell->cell_spec->function == function)
            return true;
    return false;
}

const char *word(const CellEntry *cell) { return cell_function_name(cell->cell_spec->function); }

bool is_output(const CellEntry *cell)
{
    return has_function(cell, {CELL_FUNCTION_OUTPUT2, CELL_FUNCTION_OUTPUT3});
}

// ------------------------------------------------------------------------------ cells and ports

bool same_port(const PortId *a, const PortId *b)
{
    return a->subscripted == b->subscripted && same_text(a->name, b->name) &&
           (!a->subscripted || a->subscript == b->subscript);
}

const CellEntry *find_other_port_cell(const GSList *node, int64_t number, const PortId *port)
{
    for (; node; node = node->next) {
        const PortId *own = entry_of(node)->cell_spec->port;
        if (own && entry_of(node)->cell_number != number && same_port(own, port))
            return entry_of(node);
    }
    return nullptr;
}

const CellEntry *find_driving_port_cell(const GSList *node, int64_t number, const PortId *port)
{
    for (; node; node = node->next)
        if (const CellEntry *cell = find_other_port_cell(node, number, port);
            cell == entry_of(node) && !has_function(cell, {CELL_FUNCTION_OBSERVE_ONLY}))
            return cell;
    return nullptr;
}

// The messages of one cell.
class PortWalks
{
  public:
    PortWalks(const Bsdl *bsdl, const CellEntry *cell, int32_t pin_type)
        : bsdl_(bsdl), data_(bsdl->data), table_(data_->boundary_register->cell_table), cell_(cell),
          port_(cell->cell_spec->port), pin_type_(pin_type)
    {
        bool observes = has_function(cell, {CELL_FUNCTION_OBSERVE_ONLY});
        if (pin_type == PIN_TYPE_OUT && is_output(cell))
            one_driver({CELL_FUNCTION_OUTPUT2, CELL_FUNCTION_OUTPUT3}, "an OUTPUT");
        if (pin_type == PIN_TYPE_INOUT && has_function(cell, {CELL_FUNCTION_BIDIR}))
            one_driver({CELL_FUNCTION_BIDIR, CELL_FUNCTION_OUTPUT2, CELL_FUNCTION_OUTPUT3},
                       "a BIDIR/OUTPUT2/OUTPUT3");
        if (pin_type == PIN_TYPE_INOUT && is_output(cell)) {
            one_driver({CELL_FUNCTION_OUTPUT2, CELL_FUNCTION_OUTPUT3}, "an OUTPUT2/OUTPUT3");
            input_beside();
        }
        if (pin_type == PIN_TYPE_BUFFER && has_function(cell, {CELL_FUNCTION_OUTPUT2})) {
            const CellEntry *other = find_other_port_cell(table_, cell->cell_number, port_);
            if (has_function(other, {CELL_FUNCTION_OUTPUT2}))
                two(other, "an OUTPUT2");
        }
        if (pin_type == PIN_TYPE_OUT && observes && !observed_output())
            messages.push_back(no_driver(port_text(port_), "OUTPUT"));
        if (pin_type == PIN_TYPE_BUFFER && observes && !first_walk() && !observed_output())
            messages.push_back(no_driver(port_->name, "OUTPUT2"));
    }

    ExpectedMessages messages;

  private:
    void two(const CellEntry *other, const char *ending)
    {
        messages.push_back(two_drivers(cell_->cell_number, word(cell_), other->cell_number,
                                       word(other), port_text(port_), ending));
    }

    void one_driver(Functions drivers, const char *ending)
    {
        for (const GSList *node = g_slist_find(table_, cell_)->next; node; node = node->next) {
            const CellEntry *hit = find_other_port_cell(node, cell_->cell_number, port_);
            if (!hit)
                return;
            if (has_function(hit, drivers))
                return two(hit, ending);
        }
    }

    void input_beside()
    {
        for (const GSList *node = table_; node; node = node->next) {
            const CellEntry *other = entry_of(node);
            if (other->cell_spec->port && other->cell_number != cell_->cell_number &&
                same_port(other->cell_spec->port, port_) &&
                has_function(other, {CELL_FUNCTION_INPUT, CELL_FUNCTION_OBSERVE_ONLY}))
                return;
        }
        messages.push_back(no_input(bsdl_->strict ? ERROR : WARNING, cell_->cell_number,
                                    word(cell_), port_text(port_)));
    }

    bool first_walk() const
    {
        if (!table_->next)
            return false;
        for (const GSList *node = table_->next; node; node = node->next) {
            const CellEntry *hit = find_other_port_cell(node, cell_->cell_number, port_);
            if (!hit)
                return false;
            if (is_output(hit))
                return true;
        }
        return true;
    }

    // The walk over the pairs of all groups from the cursor on. It leaves the cursor at the end,
    // for good, unless a hit ends it.
    bool walk_groups(const GSList **cursor, const CellEntry **found)
    {
        bool hit = false;
        for (; *cursor; *cursor = (*cursor)->next) {
            const auto *group = static_cast<const TwinGroupEntry *>((*cursor)->data);
            for (const GSList *link = group->twin_groups; link; link = link->next) {
                const auto *pair = static_cast<const TwinGroup *>(link->data);
                if (!same_port(pair->associated, port_))
                    continue;
                *found = find_driving_port_cell(pin_type_ == PIN_TYPE_OUT ? table_->next : table_,
                                                -1, pair->representative);
                if (!is_output(*found))
                    continue;
                hit = true;
                if (!data_->aio)
                    messages.push_back(
                        backed_by_pair(cell_->cell_number, port_text(pair->associated)));
                if (pin_type_ == PIN_TYPE_OUT || !data_->aio)
                    return true;
            }
        }
        return hit;
    }

    bool observed_output()
    {
        const CellEntry *found = nullptr;
        const GSList *cursor = data_->grouped_ports;
        for (const GSList *node = table_; node; node = node->next) {
            found = find_other_port_cell(node, cell_->cell_number, port_);
            if (is_output(found))
                break;
            if ((!bsdl_->strict || data_->aio) && walk_groups(&cursor, &found))
                break;
        }
        return found != nullptr;
    }

    const Bsdl *bsdl_;
    const BsdlData *data_;
    GSList *table_;
    const CellEntry *cell_;
    const PortId *port_;
    int32_t pin_type_;
};

struct Port {
    const char *name;
    int32_t pin_type;
    int32_t subscript; // -1: none
};

// Neighbours form pairs and meet in one table.
constexpr Port PORTS[] = {
    {"Y", PIN_TYPE_OUT, -1},    {"y", PIN_TYPE_OUT, -1},    {"N", PIN_TYPE_OUT, -1},
    {"V", PIN_TYPE_OUT, 0},     {"V", PIN_TYPE_OUT, 1},     {"Q", PIN_TYPE_BUFFER, -1},
    {"q", PIN_TYPE_BUFFER, -1}, {"R", PIN_TYPE_BUFFER, -1}, {"B", PIN_TYPE_INOUT, -1},
    {"b", PIN_TYPE_INOUT, -1},  {"W", PIN_TYPE_INOUT, 1},
};
constexpr int32_t TOGETHER = 3;

// A table with its pairs, which takes the place of what the handle has.
struct TableWithPairs {
    static constexpr int32_t MOST_ROWS = 6, MOST_PAIRS = 4;
    RowsOfCells rows;
    int32_t pin_types[MOST_ROWS];
    TwinGroup pairs[MOST_PAIRS] = {};
    GSList pair_links[MOST_PAIRS] = {};
    TwinGroupEntry entries[2] = {};
    GSList entry_links[2] = {{&entries[0], &entry_links[1]}, {&entries[1], nullptr}};

    TableWithPairs(Bsdl *bsdl, std::vector<PortId> &ports, Random &random)
        : rows(1 + random.below(MOST_ROWS))
    {
        int32_t first_port = random.below(std::size(PORTS) - TOGETHER + 1);
        auto any_port = [&] { return first_port + random.below(TOGETHER); };
        for (uint32_t i = 0; i < rows.count; i++) {
            int32_t port = any_port();
            pin_types[i] = PORTS[port].pin_type;
            rows.entries[i].cell_number = random.below(4);
            rows.specs[i].port = random.below(8) ? &ports[port] : nullptr;
            rows.specs[i].function = random.one_of(
                {CELL_FUNCTION_INPUT, CELL_FUNCTION_OUTPUT2, CELL_FUNCTION_OUTPUT3,
                 CELL_FUNCTION_BIDIR, CELL_FUNCTION_OBSERVE_ONLY, CELL_FUNCTION_OBSERVE_ONLY});
        }
        int32_t count = random.below(MOST_PAIRS + 1), in_first_entry = random.below(count + 1);
        for (int32_t i = count; i-- > 0;) {
            pairs[i] = {&ports[any_port()], &ports[any_port()], nullptr, 0};
            GSList **head = &entries[i >= in_first_entry].twin_groups;
            pair_links[i] = {&pairs[i], *head};
            *head = &pair_links[i];
        }
        bsdl->data->boundary_register = &rows.record;
        bsdl->data->grouped_ports = count ? entry_links : nullptr;
        bsdl->strict = random.below(2);
        bsdl->data->aio = random.below(2) ? reinterpret_cast<AioData *>(this) : nullptr;
        lookups_drop(bsdl);
    }
};

} // namespace

TEST(CellSearches, PortRulesAsWalked)
{
    Reading reading(with_cells({"A:in", "Y:out", "N:out", "Q:buffer", "R:buffer", "B:inout",
                                "V:out(0 to 1)", "W:inout(0 to 1)"},
                               {"0 (BC_0, A, input, X)"}));
    Bsdl *bsdl = reading.handle();
    ASSERT_NE(bsdl, nullptr);
    std::vector<PortId> ports;
    for (const Port &port : PORTS)
        ports.push_back(
            {model_name(bsdl, port.name), port.subscript >= 0, std::max(port.subscript, 0)});

    BsdlData own = *bsdl->data;
    Random random(20260411);
    int met = 0;
    for (int i = 0; i < TABLES && !testing::Test::HasFailure(); i++) {
        TableWithPairs table(bsdl, ports, random);
        for (uint32_t row = 0; row < table.rows.count; row++) {
            CellEntry *cell = &table.rows.entries[row];
            if (!cell->cell_spec->port)
                continue;
            reading.clear();
            check_cell_port(bsdl, cell);
            // A function that the port's type refuses is no matter of a search.
            if (!reading.messages().empty() &&
                reading.messages()[0].text.starts_with("<cell type>"))
                continue;
            SCOPED_TRACE("table " + std::to_string(i) + ", row " + std::to_string(row));
            expect_messages(reading.messages(),
                            PortWalks(bsdl, cell, table.pin_types[row]).messages);
            met += !reading.messages().empty();
        }
    }
    EXPECT_GT(met, TABLES / 2) << "too few cells break a rule";
    lookups_drop(bsdl);
    *bsdl->data = own;
}

// -------------------------------------------------------------------------------- control cells

namespace
{

void fill_with_controls(RowsOfCells *rows, Random &random, const char *cell_name)
{
    for (uint32_t i = 0; i < rows->count; i++) {
        rows->specs[i].cell_name = cell_name;
        rows->specs[i].function =
            random.one_of({CELL_FUNCTION_CONTROL, CELL_FUNCTION_CONTROLR, CELL_FUNCTION_OUTPUT3,
                           CELL_FUNCTION_OUTPUT2, CELL_FUNCTION_BIDIR, CELL_FUNCTION_INPUT});
        rows->specs[i].safe_bit = random.below(4);
        rows->disables[i].ccell = random.below(4) - (random.below(9) == 0);
        rows->disables[i].disable_value = random.below(3);
        rows->disables[i].disable_result = 1 + random.below(6);
        rows->entries[i].cell_number = random.below(3);
        rows->entries[i].disable_spec = random.below(4) ? &rows->disables[i] : nullptr;
    }
}

bool is_controlled_by(const CellEntry &cell, const CellEntry &control)
{
    return cell.disable_spec &&
           static_cast<uint32_t>(cell.disable_spec->ccell) == control.cell_number;
}

// For each control cell a walk over the whole table.
bool walk_controlled(RowsOfCells *rows, const CellEntry &control, ExpectedMessages *messages)
{
    bool used = false;
    for (uint32_t i = 0; i < rows->count; i++) {
        const CellEntry &cell = rows->entries[i];
        if (!is_controlled_by(cell, control))
            continue;
        int32_t value = cell.disable_spec->disable_value, safe_bit = control.cell_spec->safe_bit;
        if (value != safe_bit && safe_bit != SAFE_BIT_X)
            messages->push_back(wrong_disable_value(disable_value_name(value), cell.cell_number,
                                                    word(&cell), safe_bit_name(safe_bit),
                                                    control.cell_number, word(&control)));
        cell.disable_spec->control_seen = 1;
        used = true;
    }
    return used;
}

ExpectedMessages walk_controls(RowsOfCells *rows)
{
    ExpectedMessages messages;
    for (uint32_t i = 0; i < rows->count; i++) {
        const CellEntry &cell = rows->entries[i];
        if (has_function(&cell, {CELL_FUNCTION_CONTROL, CELL_FUNCTION_CONTROLR}) &&
            !walk_controlled(rows, cell, &messages))
            messages.push_back(controls_nothing(cell.cell_number, word(&cell)));
        if (cell.disable_spec &&
            (has_function(&cell, {CELL_FUNCTION_OUTPUT2}) ||
             (has_function(&cell, {CELL_FUNCTION_BIDIR}) && is_controlled_by(cell, cell))))
            cell.disable_spec->control_seen = 1;
    }
    for (uint32_t i = 0; i < rows->count; i++) {
        const CellEntry &cell = rows->entries[i];
        if (cell.disable_spec && !cell.disable_spec->control_seen)
            messages.push_back(
                not_control(cell.cell_number, word(&cell), cell.disable_spec->ccell));
    }
    return messages;
}

} // namespace

TEST(CellSearches, ControlRulesAsWalked)
{
    Reading reading(Description(), {.verbosity = 2});
    check_up_to_cells(reading);
    BsdlData *data = reading.handle()->data;
    for (GList *link = data->pins; link; link = link->next)
        static_cast<PinEntry *>(link->data)->pin_function = PIN_FUNCTION_TCK;
    const char *cell_name = model_name(reading, "BC_0");

    Random random(20010);
    for (int i = 0; i < TABLES && !testing::Test::HasFailure(); i++) {
        SCOPED_TRACE("table " + std::to_string(i));
        RowsOfCells rows(1 + random.below(RowsOfCells::MOST));
        rows.record.boundary_length = 3;
        fill_with_controls(&rows, random, cell_name);
        ExpectedMessages messages = walk_controls(&rows);
        int32_t seen[RowsOfCells::MOST];
        for (uint32_t row = 0; row < rows.count; row++)
            seen[row] = std::exchange(rows.disables[row].control_seen, 0);

        data->boundary_register = &rows.record;
        lookups_drop(reading);
        reading.check(bsdl_check_bsr);
        expect_messages(picked(reading.messages(),
                               [](const Message &message) {
                                   return message.rule == "control-cell-safe-bit" ||
                                          message.rule == "control-cell-unused" ||
                                          message.rule == "control-cell-function";
                               }),
                        messages);
        for (uint32_t row = 0; row < rows.count; row++)
            EXPECT_EQ(seen[row], rows.disables[row].control_seen) << "row " << row;
    }
}
