// The rules between cells and ports as walks over the table, node by node: the plainest statement
// of them, which the fast searches are compared with on random tables.

#include "cells.h"

#include "boundary/boundary.h"
#include "frame/lookup.h"
#include "frame/reader_state.h"
#include "frame/texts.h"
#include "ports/ports.h"

#include <cstdarg>
#include <cstdio>
#include <random>

using namespace support;

namespace
{

const CellEntry *entry_of(const GSList *node) { return static_cast<const CellEntry *>(node->data); }

bool has_function(const CellEntry *cell, std::initializer_list<int32_t> functions)
{
    for (int32_t function : functions)
        if (cell && cell->cell_spec->function == function)
            return true;
    return false;
}

bool is_output(const CellEntry *cell)
{
    return has_function(cell, {CELL_FUNCTION_OUTPUT2, CELL_FUNCTION_OUTPUT3});
}

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

class Walks
{
  public:
    // The messages of one cell.
    Walks(const Bsdl *bsdl, const CellEntry *cell, int32_t pin_type)
        : bsdl_(bsdl), data_(bsdl->data), table_(data_->boundary_register->cell_table), cell_(cell),
          port_(cell->cell_spec->port), pin_type_(pin_type)
    {
        bool observes = has_function(cell, {CELL_FUNCTION_OBSERVE_ONLY});
        if (pin_type == PIN_TYPE_OUT && is_output(cell))
            one_driver({CELL_FUNCTION_OUTPUT2, CELL_FUNCTION_OUTPUT3}, "an OUTPUT function");
        if (pin_type == PIN_TYPE_INOUT && has_function(cell, {CELL_FUNCTION_BIDIR}))
            one_driver({CELL_FUNCTION_BIDIR, CELL_FUNCTION_OUTPUT2, CELL_FUNCTION_OUTPUT3},
                       "a BIDIR/OUTPUT2/OUTPUT3 function");
        if (pin_type == PIN_TYPE_INOUT && is_output(cell)) {
            one_driver({CELL_FUNCTION_OUTPUT2, CELL_FUNCTION_OUTPUT3},
                       "an OUTPUT2/OUTPUT3 function");
            input_beside();
        }
        if (pin_type == PIN_TYPE_BUFFER && has_function(cell, {CELL_FUNCTION_OUTPUT2})) {
            const CellEntry *other = find_other_port_cell(table_, cell->cell_number, port_);
            if (has_function(other, {CELL_FUNCTION_OUTPUT2}))
                say_two(other, "an OUTPUT2 function");
        }
        if (pin_type == PIN_TYPE_OUT && observes && !observed_output())
            say(0, "<port id> %s must have a cell with an OUTPUT function", port_text(port_));
        if (pin_type == PIN_TYPE_BUFFER && observes && !first_walk() && !observed_output())
            say(0, "<port id> %s must have a cell with an OUTPUT2 function", port_->name);
    }

    const std::string &messages() const { return messages_; }

  private:
    __attribute__((format(printf, 3, 4))) void say(int level, const char *format, ...)
    {
        char text[500];
        va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(text, sizeof text, format, arguments);
        va_end(arguments);
        messages_ += std::to_string(level) + text + "\n";
    }

    void say_two(const CellEntry *other, const char *ending)
    {
        say(0,
            "<cell number> %i with <function> %s and <cell number> %i with <function> %s, both "
            "<port id> %s cannot both have %s",
            static_cast<int>(cell_->cell_number), cell_function_name(cell_->cell_spec->function),
            static_cast<int>(other->cell_number), cell_function_name(other->cell_spec->function),
            port_text(port_), ending);
    }

    void one_driver(std::initializer_list<int32_t> drivers, const char *ending)
    {
        for (const GSList *node = g_slist_find(table_, cell_)->next; node; node = node->next) {
            const CellEntry *hit = find_other_port_cell(node, cell_->cell_number, port_);
            if (!hit)
                return;
            if (has_function(hit, drivers)) {
                say_two(hit, ending);
                return;
            }
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
        say(bsdl_->strict ? 0 : 1,
            "<cell number> %i <function> %s: at least one other <cell entry> with <port id> %s "
            "must have function INPUT or OBSERVE_ONLY but a different <cell number>",
            static_cast<int>(cell_->cell_number), cell_function_name(cell_->cell_spec->function),
            port_text(port_));
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
                    say(1, "'observe only' cell %i connected to associated output port '%s'",
                        static_cast<int>(cell_->cell_number), port_text(pair->associated));
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
    std::string messages_;
};

constexpr uint32_t MOST_ROWS = 6, MOST_PAIRS = 4;

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
constexpr uint32_t TOGETHER = 3;

// A table with its pairs, which takes the place of what the handle has.
class RandomTable
{
  public:
    RandomTable(Bsdl *bsdl, std::vector<PortId> &ports, std::mt19937 &random) : random_(random)
    {
        first_port_ = below(std::size(PORTS) - TOGETHER + 1);
        rows_ = 1 + below(MOST_ROWS);
        for (uint32_t i = 0; i < rows_; i++)
            make_row(i, ports);
        record_.cell_table = link(row_links_, rows_);
        uint32_t pairs = below(MOST_PAIRS + 1), in_first_entry = below(pairs + 1);
        for (uint32_t i = 0; i < pairs; i++) {
            pairs_[i].representative = &ports[first_port_ + below(TOGETHER)];
            pairs_[i].associated = &ports[first_port_ + below(TOGETHER)];
            pair_links_[i].data = &pairs_[i];
        }
        entries_[0].twin_groups = link(pair_links_, in_first_entry);
        entries_[1].twin_groups = link(pair_links_ + in_first_entry, pairs - in_first_entry);
        entry_links_[0].data = &entries_[0];
        entry_links_[1].data = &entries_[1];

        bsdl->data->boundary_register = &record_;
        bsdl->data->grouped_ports = pairs ? link(entry_links_, 2) : nullptr;
        bsdl->strict = static_cast<int32_t>(below(2));
        bsdl->data->aio = below(2) ? reinterpret_cast<AioData *>(this) : nullptr;
        lookups_drop(bsdl);
    }

    uint32_t rows() const { return rows_; }
    CellEntry *row(uint32_t i) { return &cells_[i]; }
    int32_t pin_type(uint32_t i) const { return PORTS[first_port_ + port_of_row_[i]].pin_type; }

  private:
    uint32_t below(uint32_t bound) { return static_cast<uint32_t>(random_()) % bound; }

    void make_row(uint32_t i, std::vector<PortId> &ports)
    {
        static constexpr int32_t FUNCTIONS[] = {
            CELL_FUNCTION_INPUT, CELL_FUNCTION_OUTPUT2,      CELL_FUNCTION_OUTPUT3,
            CELL_FUNCTION_BIDIR, CELL_FUNCTION_OBSERVE_ONLY, CELL_FUNCTION_OBSERVE_ONLY};
        port_of_row_[i] = below(TOGETHER);
        specs_[i].port = below(8) ? &ports[first_port_ + port_of_row_[i]] : nullptr;
        specs_[i].function = FUNCTIONS[below(std::size(FUNCTIONS))];
        cells_[i].cell_number = below(4);
        cells_[i].cell_spec = &specs_[i];
        cells_[i].position = i;
        row_links_[i].data = &cells_[i];
    }

    static GSList *link(GSList *links, uint32_t count)
    {
        for (uint32_t i = 0; i < count; i++)
            links[i].next = i + 1 < count ? &links[i + 1] : nullptr;
        return count ? links : nullptr;
    }

    std::mt19937 &random_;
    uint32_t first_port_, rows_;
    uint32_t port_of_row_[MOST_ROWS];
    CellEntry cells_[MOST_ROWS] = {};
    CellSpec specs_[MOST_ROWS] = {};
    GSList row_links_[MOST_ROWS];
    TwinGroup pairs_[MOST_PAIRS] = {};
    GSList pair_links_[MOST_PAIRS];
    TwinGroupEntry entries_[2] = {};
    GSList entry_links_[2];
    BoundaryRegister record_ = {};
};

void append_message(void *messages, BsdlMessage *message)
{
    *static_cast<std::string *>(messages) += std::to_string(message->level) + message->text + "\n";
}

} // namespace

TEST(CellPortSearches, AgreeWithTheWalks)
{
    constexpr int TABLES = 100000;
    Reading reading(with_cells({"A:in", "Y:out", "N:out", "Q:buffer", "R:buffer", "B:inout",
                                "V:out(0 to 1)", "W:inout(0 to 1)"},
                               {"0 (BC_0, A, input, X)"}));
    Bsdl *bsdl = reading.handle();
    ASSERT_NE(bsdl, nullptr);
    std::vector<PortId> ports;
    for (const Port &port : PORTS)
        ports.push_back(
            {model_name(bsdl, port.name), port.subscript >= 0, std::max(port.subscript, 0)});

    std::string sent;
    BsdlContext context = {append_message, &sent, 2};
    reader_state.context = &context;
    BsdlData own = *bsdl->data;
    std::mt19937 random(20260411);
    int met = 0;
    for (int i = 0; i < TABLES && !testing::Test::HasFailure(); i++) {
        RandomTable table(bsdl, ports, random);
        for (uint32_t row = 0; row < table.rows(); row++) {
            const CellEntry *cell = table.row(row);
            if (!cell->cell_spec->port)
                continue;
            sent.clear();
            check_cell_port(bsdl, table.row(row));
            // A function that the port's type refuses is no matter of a search.
            if (sent.starts_with("0<cell type>"))
                continue;
            Walks walks(bsdl, cell, table.pin_type(row));
            EXPECT_EQ(sent, walks.messages()) << "table " << i << ", row " << row;
            met += !sent.empty();
        }
    }
    EXPECT_GT(met, TABLES / 2) << "too few cells break a rule";
    lookups_drop(bsdl);
    *bsdl->data = own;
}
