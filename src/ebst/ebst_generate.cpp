#include "boundary/boundary.h"
#include "ebst/ebst.h"
#include "frame/check.h"
#include "frame/texts.h"
#include "header/header.h"
#include "ports/ports.h"

#include <charconv>
#include <cstring>

namespace
{

constexpr uint32_t FIRST_NAMES = 64;

// The text of a number.
struct Digits {
    char text[12];
    size_t length;

    explicit Digits(int32_t number)
    {
        length = static_cast<size_t>(std::to_chars(text, text + sizeof text, number).ptr - text);
    }
};

} // namespace

// ------------------------------------------------------------------------------------------- words
// Put together by hand: a large device has a million of each.

static const char *quoted(Bsdl *bsdl, const char *text)
{
    text = shown(text);
    size_t length = std::strlen(text);
    auto *made = static_cast<char *>(arena_alloc(&bsdl->arena, length + 3));
    made[0] = '"';
    std::memcpy(made + 1, text, length);
    made[length + 1] = '"';
    return made;
}

// "A" or "A(3)", with the double quotes.
static const char *quoted_port(Bsdl *bsdl, const PortId *port)
{
    if (!port->subscripted)
        return quoted(bsdl, port->name);
    const char *name = shown(port->name);
    size_t length = std::strlen(name);
    Digits digits(port->subscript);
    auto *made = static_cast<char *>(arena_alloc(&bsdl->arena, length + digits.length + 5));
    char *at = made;
    *at++ = '"';
    std::memcpy(at, name, length);
    at += length;
    *at++ = '(';
    std::memcpy(at, digits.text, digits.length);
    at += digits.length;
    *at++ = ')';
    *at = '"';
    return made;
}

// -------------------------------------------------------------------------------------------- pins

static bool contains_folded(const char *text, const char *part)
{
    for (; *text; text++)
        if (text_starts_with(text, part))
            return true;
    return false;
}

// A linkage port supplies power unless its name speaks of ground: G... counts whatever follows.
static int32_t supply_type(const char *name)
{
    name = shown(name);
    bool is_ground = text_starts_with(name, "G") || text_starts_with(name, "VS") ||
                     contains_folded(name, "GND") || contains_folded(name, "VSS");
    return is_ground ? EBST_TYPE_GND : EBST_TYPE_PWR;
}

static int32_t ebst_pin_type(const PinEntry *pin)
{
    switch (pin->pin_function) {
    case PIN_FUNCTION_TDI:
        return EBST_TYPE_TDI;
    case PIN_FUNCTION_TDO:
        return EBST_TYPE_TDO;
    case PIN_FUNCTION_TCK:
        return EBST_TYPE_TCK;
    case PIN_FUNCTION_TMS:
        return EBST_TYPE_TMS;
    case PIN_FUNCTION_TRST:
        return EBST_TYPE_TRST;
    case PIN_FUNCTION_ASSOCIATED:
    case PIN_FUNCTION_COMPLIANCE:
        return EBST_TYPE_NC;
    case PIN_FUNCTION_ASSOCIATED_WITH_CELL:
        return EBST_TYPE_IN;
    default:
        break;
    }
    switch (pin->pin_type) {
    case PIN_TYPE_IN:
        return EBST_TYPE_IN;
    case PIN_TYPE_OUT:
        return pin->has_disable ? EBST_TYPE_OUTZ : EBST_TYPE_OUT;
    case PIN_TYPE_INOUT:
        return EBST_TYPE_IO;
    case PIN_TYPE_BUFFER:
        return EBST_TYPE_OUT;
    case PIN_TYPE_LINKAGE:
        return supply_type(pin->port_id->name);
    case PIN_TYPE_IN_NO_CELL:
    case PIN_TYPE_OUT_NO_CELL:
    case PIN_TYPE_INOUT_NO_CELL:
    case PIN_TYPE_BUFFER_NO_CELL:
        return EBST_TYPE_NC;
    default:
        return 0;
    }
}

// In one array, as the pins themselves. NULL without pins, or when memory runs out.
static EbstPin *make_pins(Bsdl *bsdl, GSList **list)
{
    const BsdlData *data = bsdl->data;
    uint32_t count = list_count(&bsdl->data->pin_walk, data->pins);
    auto *pins = count ? arena_array<EbstPin>(&bsdl->arena, count) : nullptr;
    if (!pins)
        return nullptr;
    List made = {};
    EbstPin *pin = pins;
    for (const PinEntry *entry : items<PinEntry>(data->pins)) {
        pin->number = entry->physical_name;
        pin->name = quoted_port(bsdl, entry->port_id);
        pin->type = ebst_pin_type(entry);
        made = model_append(bsdl, made, pin++);
    }
    *list = made.head;
    return pins;
}

// ------------------------------------------------------------------------------------------- cells

static bool has_disable_value(const CellEntry *cell)
{
    return cell->disable_spec && cell->disable_spec->disable_value != DISABLE_VALUE_NONE;
}

static int32_t ebst_function(const CellEntry *cell)
{
    int32_t function = cell->cell_spec->function;
    if (function != CELL_FUNCTION_BIDIR)
        return function;
    return has_disable_value(cell) ? CELL_FUNCTION_BIDIR_OUT : CELL_FUNCTION_BIDIR_IN;
}

// '0', '1' or 0 for a cell that has no initial value. What counts is the code, not the value that
// it stands for: a safe bit of 0 gives '1' as well.
static int32_t initial_value(const CellEntry *cell)
{
    if (cell->cell_spec->function != CELL_FUNCTION_CONTROLR)
        return 0;
    return cell->cell_spec->safe_bit > SAFE_BIT_NONE ? '1' : '0';
}

// For example BC_1_INPUT, BC_7_BIDIR_OUT, BC_1_CONTROLR_1.
static const char *ebst_cell_name(Bsdl *bsdl, const CellEntry *cell)
{
    const char *name = shown(cell->cell_spec->cell_name);
    const char *function = cell_function_name(ebst_function(cell));
    size_t name_length = std::strlen(name), function_length = std::strlen(function);
    auto *made = static_cast<char *>(arena_alloc(&bsdl->arena, name_length + function_length + 4));
    char *at = made;
    std::memcpy(at, name, name_length);
    at += name_length;
    *at++ = '_';
    std::memcpy(at, function, function_length);
    at += function_length;
    if (int32_t value = initial_value(cell)) {
        *at++ = '_';
        *at = static_cast<char>(value);
    }
    return made;
}

static bool is_capture_of(const CaptDesc *capture, int32_t function)
{
    return capture->cell_context == function ||
           (function == CELL_FUNCTION_BIDIR && (capture->cell_context == CELL_FUNCTION_BIDIR_IN ||
                                                capture->cell_context == CELL_FUNCTION_BIDIR_OUT));
}

static const CaptDesc **captures_of(Bsdl *bsdl, const CellEntry *cell)
{
    const GSList *all = cell->cell_desc ? cell->cell_desc->capt_descs : nullptr;
    int32_t function = cell->cell_spec->function;
    size_t count = 0;
    for (const CaptDesc *capt : items<CaptDesc>(all))
        count += is_capture_of(capt, function);
    auto **captures = arena_array<const CaptDesc *>(&bsdl->arena, count + 1);
    if (!captures)
        return nullptr;
    size_t at = 0;
    for (const CaptDesc *capt : items<CaptDesc>(all))
        if (is_capture_of(capt, function))
            captures[at++] = capt;
    return captures;
}

static EbstCell *make_cell(Bsdl *bsdl, const CellEntry *cell)
{
    auto *made = model_new<EbstCell>(bsdl);
    made->name = ebst_cell_name(bsdl, cell);
    made->function = ebst_function(cell);
    made->init_update = initial_value(cell);
    made->captures = captures_of(bsdl, cell);
    return made;
}

// Equal for two cells if and only if their names in the file are equal, letter by letter: each
// writing of a cell name is stored once, and no ending of a name is the end of another ending.
static uint64_t ebst_name_key(const CellEntry *cell)
{
    auto name = reinterpret_cast<uint64_t>(cell->cell_spec->cell_name);
    return name << 5 | static_cast<uint64_t>(ebst_function(cell)) << 1 |
           (initial_value(cell) == '1');
}

// The cells made so far, by name. There are few of them as a rule, so the index grows with them.
struct CellNames {
    Scratch scratch;
    Index index;
    EbstCell **cells;
    uint64_t *keys;
    uint32_t count;
    uint32_t capacity;
};

static void grow(CellNames *names)
{
    names->capacity = names->capacity ? names->capacity * 4 : FIRST_NAMES;
    auto **cells = arena_array<EbstCell *>(&names->scratch, names->capacity);
    auto *keys = arena_array<uint64_t>(&names->scratch, names->capacity);
    index_start(&names->index, &names->scratch, names->capacity);
    if (names->scratch.failed)
        return;
    for (uint32_t i = 0; i < names->count; i++) {
        cells[i] = names->cells[i];
        keys[i] = names->keys[i];
        index_first(&names->index, keys[i], i);
    }
    names->cells = cells;
    names->keys = keys;
}

static GSList *make_cells(Bsdl *bsdl, GSList *cell_table)
{
    CellNames names = {};
    if (names.scratch.failed) {
        bsdl->arena.failed = true;
        return nullptr;
    }
    List cells = {};
    for (const CellEntry *cell : items<CellEntry>(cell_table)) {
        if (names.count == names.capacity)
            grow(&names);
        if (names.scratch.failed)
            break;
        uint64_t key = ebst_name_key(cell);
        uint32_t known = index_first(&names.index, key, names.count);
        if (known == INDEX_NONE) {
            known = names.count++;
            names.keys[known] = key;
            names.cells[known] = make_cell(bsdl, cell);
            cells = model_append(bsdl, cells, names.cells[known]);
        }
        cell->cell_spec->ebst_name = names.cells[known]->name;
    }
    bsdl->arena.failed |= names.scratch.failed;
    return cells.head;
}

// ------------------------------------------------------------------------------------------- chain

static bool reads_pin(const CellEntry *cell)
{
    switch (cell->cell_spec->function) {
    case CELL_FUNCTION_INPUT:
    case CELL_FUNCTION_CLOCK:
    case CELL_FUNCTION_BIDIR:
    case CELL_FUNCTION_BIDIR_IN:
    case CELL_FUNCTION_OBSERVE_ONLY:
        return true;
    default:
        return false;
    }
}

static bool drives_pin(const CellEntry *cell)
{
    switch (cell->cell_spec->function) {
    case CELL_FUNCTION_OUTPUT2:
    case CELL_FUNCTION_OUTPUT3:
    case CELL_FUNCTION_BIDIR:
    case CELL_FUNCTION_BIDIR_OUT:
        return true;
    default:
        return false;
    }
}

static bool is_bidirectional(const CellEntry *cell)
{
    int32_t function = cell->cell_spec->function;
    return function >= CELL_FUNCTION_BIDIR && function <= CELL_FUNCTION_BIDIR_OUT;
}

// Whether the row names the cell that disables this one. A cell that must have a disable
// specification and lacks it has none to name.
static bool is_controlled(const CellEntry *cell)
{
    int32_t function = cell->cell_spec->function;
    return cell->disable_spec && (function == CELL_FUNCTION_OUTPUT2 ||
                                  function == CELL_FUNCTION_OUTPUT3 || is_bidirectional(cell));
}

// Whether the row names the cell itself.
static bool is_control(const CellEntry *cell)
{
    int32_t function = cell->cell_spec->function;
    return function == CELL_FUNCTION_INTERNAL ||
           ((function == CELL_FUNCTION_CONTROL || function == CELL_FUNCTION_CONTROLR) &&
            !cell->merged_with);
}

static const int32_t *control_position(const CellEntry *cell)
{
    if (is_controlled(cell))
        return &cell->disable_spec->ccell;
    if (is_control(cell))
        return reinterpret_cast<const int32_t *>(&cell->cell_number);
    return nullptr;
}

static const char *disable_value(const CellEntry *cell)
{
    if (is_controlled(cell))
        return disable_value_name(cell->disable_spec->disable_value);
    if (is_control(cell))
        return safe_bit_name(cell->cell_spec->safe_bit);
    return nullptr;
}

static const PinEntry *pin_of(Bsdl *bsdl, const CellEntry *cell)
{
    const PortId *port = cell->cell_spec->port;
    return port ? find_pin_entry(bsdl, port) : nullptr;
}

// As the cell writes it, which may differ in case from the declaration of the port.
static const char *pin_name(Bsdl *bsdl, const EbstPin *pins, const CellEntry *cell,
                            const PinEntry *pin)
{
    const PortId *port = cell->cell_spec->port;
    if (!port)
        return "-";
    if (!pin || pin->pin_type == PIN_TYPE_LINKAGE)
        return nullptr;
    const auto *first = static_cast<const PinEntry *>(bsdl->data->pins->data);
    return port->name == pin->port_id->name ? pins[pin - first].name : quoted_port(bsdl, port);
}

// A merged cell has one row: what it reads is told by its INPUT entry, what it drives by the other.
static EbstChainEntry *make_chain_entry(Bsdl *bsdl, const EbstPin *pins, const CellEntry *cell)
{
    const CellEntry *driver = cell->merged_with ? cell->merged_with : cell;
    const PinEntry *pin = pin_of(bsdl, cell);
    const PinEntry *driven_pin = driver == cell ? pin : pin_of(bsdl, driver);

    auto *entry = model_new<EbstChainEntry>(bsdl);
    entry->position = static_cast<int32_t>(cell->cell_number);
    entry->cell_name = cell->cell_spec->ebst_name;
    entry->pin_name = pin_name(bsdl, pins, cell, pin);
    if (pin && reads_pin(cell))
        entry->data_input = pin->physical_name;
    if (driven_pin && drives_pin(driver))
        entry->data_output = driven_pin->physical_name;
    if (is_bidirectional(cell) && cell->disable_spec)
        entry->select_position = &cell->disable_spec->ccell;
    entry->control_position = control_position(driver);
    entry->disable_value = disable_value(driver);
    return entry;
}

static GSList *make_chain(Bsdl *bsdl, const EbstPin *pins, GSList *cell_table)
{
    List chain = {};
    for (const CellEntry *cell : items<CellEntry>(cell_table)) {
        if (!cell->merged_with || cell->cell_spec->function == CELL_FUNCTION_INPUT)
            chain = model_append(bsdl, chain, make_chain_entry(bsdl, pins, cell));
    }
    return chain.head;
}

// -------------------------------------------------------------------------------------- the export

int32_t bsdlGenEbst(Bsdl *bsdl)
{
    const Call call(bsdl);
    if (call.code)
        return call.code;
    BsdlData *data = bsdl->data;
    rule_message(BSDL_LEVEL_PHASE, 1, {}, "Generating EBST datasheet '%s'",
                 shown(data->component_name));
    auto *ebst = model_new<Ebst>(bsdl);
    ebst->component_name = data->component_name;
    ebst->ebst_file_name = bsdl->ebst_file_name;
    const EbstPin *pins = make_pins(bsdl, &ebst->pins);
    const BoundaryRegister *record = data->boundary_register;
    if (record && !bsdl->arena.failed) {
        ebst->boundary_length = static_cast<int32_t>(record->boundary_length);
        ebst->cells = make_cells(bsdl, record->cell_table);
        ebst->chain = make_chain(bsdl, pins, record->cell_table);
    }
    lookups_drop(bsdl);
    if (bsdl->arena.failed)
        return BSDL_RESULT_FAILED;
    bsdl->ebst = ebst;
    rule_message(BSDL_LEVEL_PHASE, 1, {}, "EBST datasheet '%s' done\n",
                 shown(data->component_name));
    return BSDL_RESULT_OK;
}
