// The checks of IEEE 1149.6 descriptions.

#include "aio/aio.h"
#include "boundary/boundary.h"
#include "frame/check.h"
#include "frame/texts.h"
#include "ports/ports.h"
#include "registers/registers.h"

#include <cstdlib>

namespace
{

// EXTEST_PULSE, EXTEST_TRAIN and the pin behavior are optional: the result 5 for one that is absent
// counts as passed.
constexpr CheckStep AIO_STEPS[] = {
    {.check = bsdl_check_aio_conformance,
     .fails_from = 1,
     .passed = "\tAIO Component Conformance passed",
     .failed = "\tAIO Component Conformance has errors"},
    {.check = bsdl_check_aio_extest_pulse,
     .fails_from = 6,
     .passed = "\tAIO EXTEST Pulse Execution passed",
     .failed = "\tAIO EXTEST Pulse Execution has errors"},
    {.check = bsdl_check_aio_extest_train,
     .fails_from = 6,
     .passed = "\tAIO EXTEST Train Execution passed",
     .failed = "\tAIO EXTEST Train Execution has errors"},
    {.check = bsdl_check_aio_pin_behavior,
     .fails_from = 6,
     .passed = "\tAIO Pin Behavior passed",
     .failed = "\tAIO Pin Behavior has errors"},
};
// clang-format on

// Finds the first compliance port that equals a port. Letter case counts here: a name in another
// case is another name.
struct ComplianceIndex {
    Index names; // address of the name -> first position of that spelling
    Index whole; // that position -> first port of the name without a subscript
    Index bits;  // that position and a subscript -> first port of both
};

// What the rules about pins look at.
struct PinCheck {
    Bsdl *bsdl;
    Scratch arena;
    ComplianceIndex compliance;
    Index last_use;    // port_key -> number of its last use
    uint32_t uses;     // number of the current use
    GSList *described; // the descriptions
};

} // namespace

// --------------------------------------------------------------------------------- the driver

// Without `strict` a description that uses the package may leave the statements out.
static int32_t aio_missing(Bsdl *bsdl)
{
    const Place use = bsdl->data->aio_use_place;
    rule_message(bsdl->strict ? BSDL_LEVEL_ERROR : BSDL_LEVEL_WARNING, bsdl->strict ? 1 : 3,
                 {"aio-missing", place_or(use, entity_place())},
                 "    BSDL AIO extension not defined");
    if (bsdl->strict)
        return BSDL_RESULT_NO_AIO;
    if (!(bsdl->standards & BSDL_STANDARD_BIT_1149_6_2003))
        return BSDL_RESULT_OK;
    aio_data_new(bsdl, use);
    return BSDL_RESULT_MISSING;
}

static int32_t check_aio_steps(Bsdl *bsdl)
{
    int32_t result = BSDL_RESULT_OK;
    for (const CheckStep &step : AIO_STEPS)
        if (check_step(bsdl, step))
            result = BSDL_RESULT_FAILED;
    return checks_end(bsdl) ? result : int32_t{BSDL_RESULT_FAILED};
}

int32_t bsdl_check_aio(Bsdl *h)
{
    const Call call(h);
    if (!call.refused())
        bsdl_msg(BSDL_LEVEL_PROGRESS, 2, "    BSDL AIO semantic checks");
    if (call.code)
        return call.code;
    BsdlData *data = h->data;
    if (!data->aio && aio_missing(h) == BSDL_RESULT_NO_AIO)
        return BSDL_RESULT_NO_AIO;

    int32_t result = BSDL_RESULT_OK;
    if (!general_checks_passed(h, &result))
        return result;
    if (check_aio_steps(h) != BSDL_RESULT_OK) {
        rule_message(BSDL_LEVEL_ERROR, 1, {.id = nullptr, .sums_up = true},
                     "    BSDL AIO semantic checks failed\n");
        return BSDL_RESULT_FAILED;
    }
    data->check_passed |= CHECK_PASSED_AIO;
    data->check_state |= CHECK_STATE_AIO_PASSED;
    bsdl_msg(BSDL_LEVEL_INFO, 2, "    BSDL AIO semantic checks passed\n");
    return BSDL_RESULT_OK;
}

int32_t bsdl_check_aio_conformance(Bsdl *h)
{
    const Call call(h);
    if (call.code)
        return call.code;
    return h->data->aio ? BSDL_RESULT_OK : aio_missing(h);
}

// ------------------------------------------------------------------------------ pulse and train

static int32_t check_pulse_instruction(Bsdl *bsdl, Place place)
{
    if (find_instruction(bsdl, model_name(bsdl, "EXTEST_PULSE")))
        return BSDL_RESULT_OK;
    return rule_error({"aio-extest-pulse-missing", place},
                      "Instruction opcode must have EXTEST_PULSE instruction");
}

static int32_t check_train_instruction(Bsdl *bsdl, Place place)
{
    if (find_instruction(bsdl, model_name(bsdl, "EXTEST_TRAIN")))
        return BSDL_RESULT_OK;
    return rule_error({"aio-extest-train-missing", place},
                      "Instruction opcode must have EXTEST_TRAIN instruction");
}

static bool same_clock(const PortId *a, const PortId *b)
{
    return same_name(a->name, b->name) &&
           ((!a->subscripted && !b->subscripted) || a->subscript == b->subscript);
}

int32_t bsdl_check_aio_extest_pulse(Bsdl *h)
{
    const Call call(h);
    if (call.code)
        return call.code;
    const AioData *aio = h->data->aio;
    if (!aio)
        return BSDL_RESULT_NO_AIO;
    if (!aio->extest || !aio->extest->pulse)
        return BSDL_RESULT_MISSING;
    const AioPulse *pulse = aio->extest->pulse;
    int32_t result = check_pulse_instruction(h, pulse->place);
    const PortId *port = pulse->clock_cycles ? pulse->clock_cycles->port : nullptr;
    const PortId *tck = bsdlGetTckPortId(h);
    if (port && tck && !same_clock(port, tck))
        result |= rule_error({"aio-pulse-clock-not-tck", pulse->clock_cycles->place},
                             "port_id '%s' is not a TCK pin", port_text_square(port));
    return result;
}

int32_t bsdl_check_aio_extest_train(Bsdl *h)
{
    const Call call(h);
    if (call.code)
        return call.code;
    const AioData *aio = h->data->aio;
    if (!aio)
        return BSDL_RESULT_NO_AIO;
    if (!aio->extest || !aio->extest->train)
        return BSDL_RESULT_MISSING;
    const AioTrain *train = aio->extest->train;
    int32_t result = check_train_instruction(h, train->place);
    if (train->pulse_count == 0)
        result |= rule_error(
            {"aio-train-without-pulses", token_place(train->place.begin, VALUE_TOKEN + 1)},
            "pulse count must be greater than 0");
    return result;
}

// ------------------------------------------------------------------------------- fixed ports

static uint64_t spelling(const PortId *port) { return reinterpret_cast<uintptr_t>(port->name); }

static uint64_t spelling_bit(uint32_t name, int32_t subscript)
{
    return uint64_t{name} << 32 | static_cast<uint32_t>(subscript);
}

static void index_compliance(PinCheck *check)
{
    const ComplianceRecord *record = check->bsdl->data->compliance;
    uint32_t count = 0;
    auto **ports = list_table_of<PortId>(&check->arena, record ? record->ports : nullptr, &count);
    ComplianceIndex *index = &check->compliance;
    index_start(&index->names, &check->arena, count);
    index_start(&index->whole, &check->arena, count);
    index_start(&index->bits, &check->arena, count);
    for (uint32_t at = 0; at < count; at++) {
        uint32_t before = index_first(&index->names, spelling(ports[at]), at);
        uint32_t name = before == INDEX_NONE ? at : before;
        if (ports[at]->subscripted)
            index_first(&index->bits, spelling_bit(name, ports[at]->subscript), at);
        else
            index_first(&index->whole, name, at);
    }
}

// When one of the two has no subscript, only the names are compared and only the name is shown.
static const char *fixed_port_text(const PortId *port, bool as_bit)
{
    return as_bit ? port_text_square(port) : port->name;
}

static int32_t check_compliance_port(const PinCheck *check, const AioPort *port)
{
    const PortId *id = port->port_id;
    uint32_t name = index_find(&check->compliance.names, spelling(id));
    if (name == INDEX_NONE)
        return BSDL_RESULT_OK;
    uint32_t whole = index_find(&check->compliance.whole, name);
    uint32_t bit = index_find(&check->compliance.bits, spelling_bit(name, id->subscript));
    if (id->subscripted && whole == INDEX_NONE && bit == INDEX_NONE)
        return BSDL_RESULT_OK;
    return rule_error({"aio-compliance-port", port_place(port->port_id, port->place.begin, 0)},
                      "port_id '%s' is compliance pin",
                      fixed_port_text(id, id->subscripted && bit < whole));
}

// Reports the first fixed port that equals the port. Letter case counts.
static int32_t check_fixed_ports(const PinCheck *check, const AioPort *port)
{
    const ScanPorts *scan = check->bsdl->data->scan_port;
    const PortId *id = port->port_id;
    if (!scan || !id)
        return BSDL_RESULT_FAILED;
    if (int32_t code = check_compliance_port(check, port))
        return code;
    const struct {
        const PortId *port;
        const char *what;
    } TAP_PORTS[] = {{scan->tck, "TCK"},
                     {scan->tdi, "TDI"},
                     {scan->tdo, "TDO"},
                     {scan->tms, "TMS"},
                     {scan->trst, "TRST"}};
    for (const auto &tap : TAP_PORTS) {
        if (!tap.port || tap.port->name != id->name)
            continue;
        bool both = tap.port->subscripted && id->subscripted;
        if (!both || tap.port->subscript == id->subscript)
            return rule_error(
                {"aio-test-access-port", port_place(port->port_id, port->place.begin, 0)},
                "port_id '%s' is %s port pin", fixed_port_text(id, both), tap.what);
    }
    return BSDL_RESULT_OK;
}

// ------------------------------------------------------------------------------- the pins

// Numbers the uses of ports in their order and keeps the last number of each port.
static void index_uses(PinCheck *check)
{
    size_t count = 0;
    for (const AioPinInfo *info : items<AioPinInfo>(check->described))
        count += list_length(info->ports);
    index_start(&check->last_use, &check->arena, count);
    uint32_t use = 0;
    for (const AioPinInfo *info : items<AioPinInfo>(check->described)) {
        for (const AioPort *port : items<AioPort>(info->ports))
            index_last(&check->last_use, port_key(port->port_id), use++);
    }
}

static int32_t check_port(PinCheck *check, AioPort *port)
{
    int32_t result = BSDL_RESULT_OK;
    port->pin_spec = find_port_name(check->bsdl, port->port_id->name);
    if (!port->pin_spec) {
        result |= rule_error({"aio-port-unknown", port_place(port->port_id, port->place.begin, 0)},
                             "<port id> '%s' does not exist in <logical pin map>",
                             port_text(port->port_id));
    } else {
        result |= check_fixed_ports(check, port);
        if (port->pin_spec->pin_type == PIN_TYPE_LINKAGE)
            result |=
                rule_error({"aio-port-linkage", port_place(port->port_id, port->place.begin, 0)},
                           "<port id> '%s' cannot have <pin type> LINKAGE in "
                           "<logical pin map>",
                           port_text(port->port_id));
    }
    uint32_t last = index_find(&check->last_use, port_key(port->port_id));
    if (last != INDEX_NONE && last > check->uses)
        result |= rule_error({"aio-port-repeated", port_place(port->port_id, port->place.begin, 0)},
                             "<port id> '%s' is already used in <AC pin info list>",
                             port_text(port->port_id));
    check->uses++;
    return result;
}

static bool filters(const AioTimeConstants *constants)
{
    return constants && (constants->lp_time > 0.0F || constants->hp);
}

static int32_t check_select_port(const AioPort *port, const AioTimeConstants *constants)
{
    if (!port->pin_spec)
        return BSDL_RESULT_OK;
    int32_t type = port->pin_spec->pin_type;
    int32_t result = BSDL_RESULT_OK;
    if (type != PIN_TYPE_OUT && type != PIN_TYPE_INOUT && type != PIN_TYPE_BUFFER)
        result |=
            rule_error({"aio-select-pin-type", port_place(port->port_id, port->place.begin, 0)},
                       "<port id> '%s' has <pin type> '%s', this must be 'OUT', 'INOUT' or "
                       "'BUFFER'",
                       port_text(port->port_id), port_type_name(type));
    if (filters(constants) && type != PIN_TYPE_INOUT)
        result |=
            rule_error({"aio-select-with-times", port_place(port->port_id, port->place.begin, 0)},
                       "<port id> '%s' has has " /* as is */
                       "both a <AC/DC select cell> and a <time constants> element, "
                       "<pin type> '%s' must be 'INOUT'",
                       port_text(port->port_id), port_type_name(type));
    return result;
}

static int32_t check_select_cell(Bsdl *bsdl, int32_t number, Place place)
{
    const CellEntry *cell = find_cell(bsdl, static_cast<uint32_t>(number));
    if (!cell)
        return rule_error({"aio-select-cell-unknown", place},
                          "<cell number> '%i' is referenced, but does not exist in the <boundary "
                          "scan statement>",
                          number);
    int32_t result = BSDL_RESULT_OK;
    if (cell->cell_spec->function != CELL_FUNCTION_INTERNAL)
        result |= rule_error({"aio-select-cell-function", place},
                             "<cell number> %i is used as <AC/DC select cell>, but this cell's "
                             "<function> value is '%s', and should be 'INTERNAL'",
                             number, cell_function_name(cell->cell_spec->function));
    if (cell->cell_spec->safe_bit != SAFE_BIT_0)
        result |= rule_error({"aio-select-cell-safe-bit", place},
                             "<cell number> %i is used as <AC/DC select cell>, but this cell's "
                             "<safe_bit> value is '%s', and should be '0'",
                             number, safe_bit_name(cell->cell_spec->safe_bit));
    return result;
}

static int32_t check_port_times(Bsdl *bsdl, const AioPort *port, const AioTimeConstants *constants)
{
    if (!port->pin_spec)
        return BSDL_RESULT_OK;
    int32_t type = port->pin_spec->pin_type;
    if (type != PIN_TYPE_IN && type != PIN_TYPE_INOUT)
        return filters(constants)
                   ? rule_error(
                         {"aio-times-not-allowed", port_place(port->port_id, port->place.begin, 0)},
                         "<port id> '%s' has <pin type> '%s', no <time constants> allowed "
                         "(only for 'IN' and 'INOUT')",
                         port_text(port->port_id), port_type_name(type))
                   : BSDL_RESULT_OK;
    if (constants)
        return BSDL_RESULT_OK;
    return rule_message(bsdl->strict ? BSDL_LEVEL_ERROR : BSDL_LEVEL_WARNING, bsdl->strict ? 2 : 3,
                        {"aio-times-missing", port_place(port->port_id, port->place.begin, 0)},
                        "<port id> '%s' has <pin type> '%s', at least one <time constants> must be "
                        "specified",
                        port_text(port->port_id), port_type_name(type));
}

static int32_t check_times(const AioTimeConstants *constants)
{
    int32_t result = BSDL_RESULT_OK;
    if (constants->lp_time < 0.0F)
        result |=
            rule_error({"aio-lp-time-negative", token_place(constants->lp_place.begin, 2)},
                       "<LP_time> '%s' should be > 0.0", scientific_text(constants->lp_time).text);
    if (constants->hp && constants->hp->hp_time < 0.0F)
        result |= rule_error({"aio-hp-time-negative", token_place(constants->hp_place.begin, 2)},
                             "<HP_time> '%s' should be > 0.0",
                             scientific_text(constants->hp->hp_time).text);
    return result;
}

// port [ cell , cell ... ]
static Place input_cells_place(const AioPort *port)
{
    const uint32_t first = port_tokens(port->port_id) + 1;
    const uint32_t count = list_length(port->input_cells);
    return tokens_place(port->place.begin, first, first + 2 * count - 2);
}

static int32_t check_cell_count(const AioPort *port)
{
    int64_t cells = g_slist_length(port->input_cells);
    const PinSpec *spec = port->pin_spec;
    if (spec->range_direction == RANGE_NONE || port->port_id->subscripted)
        return cells == 1 ? BSDL_RESULT_OK
                          : rule_error({"aio-input-cells-of-bit", input_cells_place(port)},
                                       "<port id> '%s' is a single bit, thus <input cell list> can "
                                       "have only one element",
                                       port_text(port->port_id));
    int64_t size = std::llabs(int64_t{spec->range_end} - spec->range_start) + 1;
    return cells == size
               ? BSDL_RESULT_OK
               : rule_error({"aio-input-cells-of-vector", input_cells_place(port)},
                            "<port id> '%s' is a bit array of size %i, but <input cell list> has "
                            "%i elements",
                            port_text(port->port_id), static_cast<int32_t>(size),
                            static_cast<int32_t>(cells));
}

static int32_t check_input_cell(Bsdl *bsdl, int32_t number, Place place)
{
    const CellEntry *cell = find_cell(bsdl, static_cast<uint32_t>(number));
    if (!cell)
        return rule_error({"aio-input-cell-unknown", place},
                          "<cell number> %i is used as <input cell>, but this cell does not exist "
                          "in <boundary register statement>",
                          number);
    int32_t function = cell->cell_spec->function;
    if (function == CELL_FUNCTION_INPUT || function == CELL_FUNCTION_OBSERVE_ONLY)
        return BSDL_RESULT_OK;
    return rule_error({"aio-input-cell-function", place},
                      "<cell number> %i is used as <input cell>, but this cell's <function> value "
                      "is '%s', and should be 'INPUT' or 'OBSERVE_ONLY'",
                      number, cell_function_name(function));
}

static int32_t check_input_cells(Bsdl *bsdl, const AioPort *port)
{
    int32_t result = BSDL_RESULT_OK;
    if (port->pin_spec && port->input_cells)
        result |= check_cell_count(port);
    TokenCursor token = {port->place.begin, port_tokens(port->port_id) + 1};
    for (const void *number : items<void>(port->input_cells)) {
        result |= check_input_cell(bsdl, GPOINTER_TO_INT(number), cursor_place(&token));
        token.behind += 2;
    }
    return result;
}

// One description: rule by rule, each over all its ports.
static int32_t check_pin_info(PinCheck *check, const AioPinInfo *info)
{
    int32_t result = BSDL_RESULT_OK;
    const AioTimeConstants *constants = info->time_constants;
    for (AioPort *port : items<AioPort>(info->ports))
        result |= check_port(check, port);
    if (constants && constants->select_cell != AIO_NO_SELECT_CELL) {
        for (const AioPort *port : items<AioPort>(info->ports))
            result |= check_select_port(port, constants);
        result |= check_select_cell(check->bsdl, constants->select_cell,
                                    token_place(constants->select_place.begin, 2));
    }
    for (const AioPort *port : items<AioPort>(info->ports))
        result |= check_port_times(check->bsdl, port, constants);
    if (constants)
        result |= check_times(constants);
    for (const AioPort *port : items<AioPort>(info->ports))
        result |= check_input_cells(check->bsdl, port);
    return result;
}

// The associated port of a differential pair is described by its representative.
static int32_t check_associated_ports(const PinCheck *check)
{
    int32_t result = BSDL_RESULT_OK;
    for (const TwinGroupEntry *entry : items<TwinGroupEntry>(check->bsdl->data->grouped_ports)) {
        for (const TwinGroup *group : items<TwinGroup>(entry->twin_groups)) {
            if (index_find(&check->last_use, port_key(group->associated)) != INDEX_NONE)
                result |= rule_error(
                    {"aio-associated-port", port_place(group->associated, group->place.begin,
                                                       port_tokens(group->representative) + 2)},
                    "<associated port> '%s' in <grouped port identification> "
                    "cannot appear in <AC pin info>",
                    port_text(group->associated));
        }
    }
    return result;
}

int32_t bsdl_check_aio_pin_behavior(Bsdl *h)
{
    const Call call(h);
    if (call.code)
        return call.code;
    const BsdlData *data = h->data;
    if (!data->aio)
        return BSDL_RESULT_NO_AIO;
    if (!data->instruction_register || !data->instruction_register->opcode_table ||
        !data->logical_ports)
        return BSDL_RESULT_MISSING;
    if (!data->aio->pin_behaviors) {
        rule_warning({"aio-pins-missing", data->aio->place}, "No AIO portlist specified");
        return BSDL_RESULT_MISSING;
    }

    PinCheck check = {.bsdl = h, .described = data->aio->pin_behaviors};
    if (check.arena.failed)
        return BSDL_RESULT_FAILED;
    index_compliance(&check);
    index_uses(&check);
    int32_t result = check_pulse_instruction(h, data->aio->place);
    result |= check_train_instruction(h, data->aio->place);
    for (const AioPinInfo *info : items<AioPinInfo>(check.described)) {
        if (check.arena.failed)
            break;
        result |= check_pin_info(&check, info);
    }
    result |= check_associated_ports(&check);
    return check_end(h, result, &check.arena);
}
