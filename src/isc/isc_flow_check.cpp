// The rules of ISC_Flow that need the rest of the description: instructions, registers and TCK.

#include "frame/check.h"
#include "isc/isc.h"
#include "ports/ports.h"
#include "registers/registers.h"

#include <cstring>

namespace
{

// What the rules of an activity go by.
struct FlowCheck {
    Bsdl *bsdl;
    const char *tck;       // name of the port of TAP_SCAN_CLOCK
    const char *flow_name; // of the current flow
    const char *data_name; // NULL when none is given
};

} // namespace

// A variable that the host sets or reads needs data, which the flow's data name stands for.
static int32_t check_variables(const IscFlow *flow)
{
    if (flow->descriptor->data_name || !flow->variables)
        return 0;
    int32_t result = 0;
    for (int32_t i = 0; i < flow->variable_count; i++) {
        const IscVariable *variable = flow->variables[i];
        if (variable && variable->value &&
            (std::strcmp(variable->value, "?") == 0 || std::strcmp(variable->value, "?!") == 0))
            result |= rule_error({"isc-flow-data-name-missing", flow->descriptor->place},
                                 "an input or IO operator exists without associated flow_name in "
                                 "flow_descriptor '%s'",
                                 flow->descriptor->flow_name);
    }
    return result;
}

// The bits of a hexadecimal text without its leading zeros: four for each digit, but for the first
// only those up to its highest bit that is set.
static int64_t hex_bits(const char *text)
{
    while (*text == '0')
        text++;
    if (!*text)
        return 0;
    int64_t first = *text >= '8' ? 4 : *text >= '4' ? 3 : *text >= '2' ? 2 : 1;
    return static_cast<int64_t>(std::strlen(text)) * 4 - 4 + first;
}

static int32_t operand_bits(int32_t operand)
{
    int32_t bits = 0;
    for (; operand != 0; operand /= 2)
        bits++;
    return bits;
}

// How many tokens an expression takes.
static uint32_t expression_tokens(const IscExpression *expression)
{
    switch (expression->operation) {
    case ISC_OPERATION_ASSIGN:
    case ISC_OPERATION_ADD:
    case ISC_OPERATION_SUBTRACT:
    case ISC_OPERATION_SHIFT_LEFT:
    case ISC_OPERATION_SHIFT_RIGHT:
        return 3;
    case ISC_OPERATION_VARIABLE_INPUT:
    case ISC_OPERATION_VARIABLE_IO:
    case ISC_OPERATION_COMPLEMENT:
        return 2;
    default:
        return 1;
    }
}

// width [: expression]
static uint32_t field_tokens(const IscUpdateField *field)
{
    return field->expression ? 2 + expression_tokens(field->expression) : 1;
}

static int32_t check_expression(const IscExpression *expression, int32_t width, uint32_t field)
{
    switch (expression->operation) {
    case ISC_OPERATION_HEX:
        if (expression->hex_string && hex_bits(expression->hex_string) > width)
            return rule_error({"isc-field-hex-too-long", token_place(field, 2)},
                              "hex_string [%i] must fit in field_width [%i]",
                              static_cast<int32_t>(hex_bits(expression->hex_string)), width);
        return 0;
    case ISC_OPERATION_ADD:
    case ISC_OPERATION_SUBTRACT:
    case ISC_OPERATION_SHIFT_LEFT:
    case ISC_OPERATION_SHIFT_RIGHT:
        if (operand_bits(expression->operand) > width)
            return rule_error({"isc-field-operand-too-long", token_place(field, 4)},
                              "operand [%i] must fit in field_width [%i]",
                              operand_bits(expression->operand), width);
        return 0;
    default:
        return 0;
    }
}

// The texts of the two kinds of field differ in more than one place, and so do their two forms.
static int32_t report_update_sum(const FlowCheck *check, const IscActivity *activity,
                                 const RegisterEntry *target, int32_t sum)
{
    Rule rule = {"isc-update-widths", activity->places.updates};
    if (check->data_name)
        return rule_error(rule,
                          "the sum of update field widths (%i) in flow '%s(%s)' activity '%s' must "
                          "be equal to the length of associated register '%s[%i]'",
                          sum, check->flow_name, check->data_name, activity->instruction_name,
                          shown(target->name), target->length);
    return rule_error(rule,
                      "the sum of update field widths (%i) in flow '%s' activity '%s' must be "
                      "equal to the length of associated register '%s[%i]'",
                      sum, check->flow_name, activity->instruction_name, shown(target->name),
                      target->length);
}

static int32_t report_capture_sum(const FlowCheck *check, const IscActivity *activity,
                                  const RegisterEntry *target, int32_t sum)
{
    Rule rule = {"isc-capture-widths", activity->places.captures};
    if (check->data_name)
        return rule_error(rule,
                          "The sum of capture field widths (%i) in flow '%s (%s)' activity '%s' "
                          "must be equal to the length of associated register '%s[%i]'",
                          sum, check->flow_name, check->data_name, activity->instruction_name,
                          shown(target->name), target->length);
    return rule_error(rule,
                      "The sum of capture field widths (%i) in flow '%s' activity '%s' must be "
                      "equal to the length of associated register '%s[%i]'",
                      sum, check->flow_name, activity->instruction_name, shown(target->name),
                      target->length);
}

static int32_t check_fields(const FlowCheck *check, const IscActivity *activity,
                            const RegisterEntry *target)
{
    int32_t result = 0;
    int64_t sum = 0;
    TokenCursor token = {activity->places.updates.begin, 0};
    for (const IscUpdateField *field : items<IscUpdateField>(activity->update_fields)) {
        sum += field->field_width;
        if (field->expression)
            result |=
                check_expression(field->expression, field->field_width, cursor_place(&token).begin);
        token.behind += field_tokens(field) + 1;
    }
    if (sum != 0 && target && sum != target->length)
        result |= report_update_sum(check, activity, target, static_cast<int32_t>(sum));

    sum = 0;
    for (const IscCaptureField *field : items<IscCaptureField>(activity->capture_fields))
        sum += field->field_width;
    if (sum != 0 && target && sum != target->length)
        result |= report_capture_sum(check, activity, target, static_cast<int32_t>(sum));
    return result;
}

static const ClockCycles *clock_of(const IscDuration *duration)
{
    if (!duration || !duration->clock_cycles || !duration->clock_cycles->port)
        return nullptr;
    return duration->clock_cycles->port->name ? duration->clock_cycles : nullptr;
}

// Only the first of the two durations that names a port is checked.
static int32_t check_wait(const FlowCheck *check, const IscActivity *activity)
{
    if (!activity->wait)
        return 0;
    const ClockCycles *clock = clock_of(activity->wait->min_duration);
    if (!clock)
        clock = clock_of(activity->wait->max_duration);
    const char *port = clock ? clock->port->name : nullptr;
    if (!port || same_name(port, check->tck))
        return 0;
    const Rule rule = {"isc-wait-clock", clock->place};
    if (check->data_name)
        return rule_error(rule,
                          "tck port name '%s' differs from tck_stmt port_id '%s' in flow '%s (%s)'",
                          port, shown(check->tck), check->flow_name, check->data_name);
    return rule_error(rule, "tck port name '%s' differs from tck_stmt port_id '%s' in flow '%s'",
                      port, shown(check->tck), check->flow_name);
}

// The message alone: a description with such a loop passes.
static void report_loop(const FlowCheck *check, const IscActivity *loop)
{
    if (static_cast<uint32_t>(loop->max_loop) >= static_cast<uint32_t>(loop->min_loop))
        return;
    Rule rule = {"isc-loop-limits", token_place(loop->places.all.begin, 4)};
    if (check->data_name)
        rule_error(rule,
                   "loop count (%i) must be greater than or equal to min loop count (%i) in flow "
                   "'%s (%s)'",
                   loop->max_loop, loop->min_loop, check->flow_name, check->data_name);
    else
        rule_error(rule,
                   "loop count (%i) must be greater than or equal to min loop count (%i) in flow "
                   "'%s'",
                   loop->max_loop, loop->min_loop, check->flow_name);
}

static int32_t check_activity(const FlowCheck *check, const IscActivity *activity)
{
    if (activity->kind != ISC_ACTIVITY_PLAIN) {
        report_loop(check, activity);
        return 0;
    }
    int32_t result = 0;
    const RegisterEntry *target = nullptr;
    const InstructionEntry *instruction = find_instruction(check->bsdl, activity->instruction_name);
    if (!instruction)
        result |= rule_error(
            {"isc-activity-instruction-unknown", token_place(activity->places.all.begin, 1)},
            "flow activity instruction: '%s' not found", activity->instruction_name);
    else if (!instruction->data_register)
        result |= rule_error(
            {"isc-activity-register-missing", token_place(activity->places.all.begin, 1)},
            "instruction '%s' has no associated register", activity->instruction_name);
    else
        target = instruction->data_register;
    result |= check_fields(check, activity, target);
    result |= check_wait(check, activity);
    return result;
}

static int32_t check_blocks(FlowCheck *check, const IscFlow *flow)
{
    check->flow_name = flow->descriptor->flow_name;
    check->data_name = flow->descriptor->data_name;
    int32_t result = 0;
    for (const IscBlock *block : items<IscBlock>(flow->blocks)) {
        for (const IscActivity *activity : items<IscActivity>(block->activities))
            result |= check_activity(check, activity);
    }
    return result;
}

// A part of a PPC/PRG file has neither instructions nor ports, so with `prg_mode` only the
// variables are checked.
int32_t bsdl_check_isc_flow(Bsdl *h, int32_t prg_mode)
{
    const Call call(h);
    if (int32_t code = isc_check_begin(call))
        return code;
    const BsdlData *data = h->data;
    if (!data->isc->flows || !data->scan_port)
        return BSDL_RESULT_MISSING;
    if (!prg_mode && (!data->scan_port->tck || !data->instruction_register ||
                      !data->instruction_register->opcode_table))
        return BSDL_RESULT_MISSING;

    FlowCheck check = {};
    check.bsdl = h;
    check.tck = prg_mode ? nullptr : data->scan_port->tck->name;
    int32_t result = 0;
    for (const IscFlow *flow : items<IscFlow>(data->isc->flows)) {
        result |= check_variables(flow);
        if (!prg_mode)
            result |= check_blocks(&check, flow);
    }
    return check_end(h, result);
}
