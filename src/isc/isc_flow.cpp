#include "isc/isc.h"

#include "frame/messages.h"
#include "scan/scanner.h"

#include <cstring>

// The actions of ISC_Flow. Where an action sets `scan_mode`, what follows is read differently: the
// same characters are a width, a hexadecimal text or a time, depending on the place.

static IscFlowReading *reading_of(Bsdl *bsdl)
{
    if (!bsdl->data->isc_flow_reading)
        bsdl->data->isc_flow_reading = model_new<IscFlowReading>(bsdl);
    return bsdl->data->isc_flow_reading;
}

// ------------------------------------------------------------------------------- the statement

// Two flows are the same when their names, each joined with the data name, are equal: F_X is the
// same as F(X).
static void forget_keys(Bsdl *bsdl)
{
    IscFlowReading *reading = reading_of(bsdl);
    reading->key_count = 0;
    reading->key_capacity = 0;
    reading->key_index = {};
}

void isc_flow_statement_begins(Bsdl *bsdl, Place name)
{
    forget_keys(bsdl);
    isc_string_begins(bsdl, ISC_STATEMENT_FLOW, name);
}

void isc_flow_statement_passed(Bsdl *bsdl)
{
    forget_keys(bsdl);
    bsdl->scan_mode = SCAN_MODE_NONE;
    isc_passed(bsdl, ISC_STATEMENT_FLOW);
}

void isc_flow_statement_skipped(Bsdl *bsdl)
{
    forget_keys(bsdl);
    isc_skipped(bsdl, ISC_STATEMENT_FLOW);
}

// ----------------------------------------------------------------------------------- variables

// Names of variables are compared with their case.
static int32_t find_variable(const IscFlowReading *reading, const char *name)
{
    for (int32_t i = 0; i < reading->variable_count; i++)
        if (std::strcmp(reading->variables[i].name, name) == 0)
            return i;
    return -1;
}

// The index of the variable, which keeps the value that it was given first. A full table takes
// nothing, not even a name that is in it.
static int32_t define_variable(Bsdl *bsdl, const char *name, const char *value)
{
    IscFlowReading *reading = reading_of(bsdl);
    if (reading->variable_count >= ISC_VARIABLES) {
        parse_message(bsdl, BSDL_LEVEL_ERROR, 2, "isc-variables-too-many",
                      "Too many variables in this flow definition");
        return -1;
    }
    int32_t known = find_variable(reading, name);
    if (known >= 0)
        return known;
    reading->variables[reading->variable_count] = {.name = name, .value = value, .length = 0};
    return reading->variable_count++;
}

IscExpression *isc_literal(Bsdl *bsdl, const char *hex_string)
{
    return model_new<IscExpression>(
        bsdl, {.operation = ISC_OPERATION_HEX, .variable_index = -1, .hex_string = hex_string});
}

IscExpression *isc_input(Bsdl *bsdl, int32_t operation)
{
    return model_new<IscExpression>(bsdl, {.operation = operation, .variable_index = -1});
}

IscExpression *isc_variable_assigned(Bsdl *bsdl, const char *name, const char *hex_string)
{
    return model_new<IscExpression>(bsdl,
                                    {.operation = ISC_OPERATION_ASSIGN,
                                     .variable_index = define_variable(bsdl, name, hex_string),
                                     .hex_string = hex_string,
                                     .is_definition = 1});
}

IscExpression *isc_variable_set(Bsdl *bsdl, const char *name, int32_t input)
{
    bool io = input == ISC_OPERATION_IO;
    return model_new<IscExpression>(
        bsdl, {.operation = io ? ISC_OPERATION_VARIABLE_IO : ISC_OPERATION_VARIABLE_INPUT,
               .variable_index = define_variable(bsdl, name, io ? "?!" : "?"),
               .is_definition = 1});
}

IscExpression *isc_variable_used(Bsdl *bsdl, const char *name, int32_t operation, int32_t operand)
{
    int32_t index = find_variable(reading_of(bsdl), name);
    if (index < 0) {
        rule_message(BSDL_LEVEL_ERROR, 2,
                     {"isc-variable-undefined", token_place(scan_place(bsdl).begin)},
                     "Variable '%s' not defined on line %i", name, scan_line(bsdl));
        bsdl->error_count++;
        return nullptr;
    }
    return model_new<IscExpression>(
        bsdl, {.operation = operation, .variable_index = index, .operand = operand});
}

// ---------------------------------------------------------------------------- fields and waits

// The width of a field is that of a variable defined in it; one that is used must have it.
static void apply_width(Bsdl *bsdl, const IscExpression *expression, int32_t width)
{
    if (!expression || expression->variable_index < 0)
        return;
    IscVariable *variable = &reading_of(bsdl)->variables[expression->variable_index];
    if (expression->is_definition)
        variable->length = width;
    else if (variable->length != width)
        parse_message(bsdl, BSDL_LEVEL_ERROR, 2, "isc-variable-length",
                      "ISC variable '%s[%i]' incorrect length, should be %i", variable->name,
                      variable->length, width);
}

IscUpdateField *isc_update_field(Bsdl *bsdl, int32_t width, IscExpression *expression)
{
    bsdl->scan_mode = SCAN_MODE_INTEGER;
    apply_width(bsdl, expression, width);
    return model_new<IscUpdateField>(bsdl, {.field_width = width, .expression = expression});
}

IscCaptureField *isc_capture_field(Bsdl *bsdl, int32_t width, IscFieldData expected,
                                   IscFieldData mask, int32_t tag)
{
    apply_width(bsdl, expected.expression, width);
    apply_width(bsdl, mask.expression, width);
    return model_new<IscCaptureField>(bsdl, {.field_width = width,
                                             .expected = expected.expression,
                                             .expected_output = expected.output,
                                             .mask = mask.expression,
                                             .mask_output = mask.output,
                                             .tag = tag});
}

int32_t isc_tags_turned(Bsdl *bsdl)
{
    parse_message(bsdl, BSDL_LEVEL_WARNING, 2, "isc-tag-order",
                  "Capture field tags order should be :CRC:OST");
    return ISC_TAG_CRC_OST;
}

IscDuration *isc_duration_new(Bsdl *bsdl, IscClockCycles *clock_cycles, double time)
{
    // After a duration comes a field width, whatever the duration was.
    bsdl->scan_mode = SCAN_MODE_INTEGER;
    return model_new<IscDuration>(bsdl, {.clock_cycles = clock_cycles, .time = seconds_from(time)});
}

// Error recovery calls this function and the next for each token that it drops, so one mistake may
// give several messages.
IscDuration *isc_duration_refused(Bsdl *bsdl)
{
    parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "isc-duration", "duration_specification");
    bsdl->scan_mode = SCAN_MODE_INTEGER;
    return nullptr;
}

IscWait *isc_wait_refused(Bsdl *bsdl)
{
    parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "isc-wait", "wait_specification");
    return nullptr;
}

IscWait *isc_wait_new(Bsdl *bsdl, IscDuration *min_duration, IscDuration *max_duration)
{
    return model_new<IscWait>(bsdl, {.min_duration = min_duration, .max_duration = max_duration});
}

int32_t isc_field_width(Bsdl *bsdl, int32_t width)
{
    if (width < 1)
        parse_message(bsdl, BSDL_LEVEL_ERROR, 2, "isc-field-width", "field_width must be > 0");
    return width;
}

int32_t isc_repeat_count(Bsdl *bsdl, int32_t count)
{
    if (count < 1)
        parse_message(bsdl, BSDL_LEVEL_ERROR, 2, "isc-repeat-count", "repeat_count must be > 0");
    return count;
}

int32_t isc_loop_count(Bsdl *bsdl, int32_t count)
{
    if (count < 1)
        parse_message(bsdl, BSDL_LEVEL_ERROR, 2, "isc-loop-count", "loop_count must be > 0");
    return count;
}

// ------------------------------------------------------------------------ activities and blocks

IscActivity *isc_activity_new(Bsdl *bsdl, const char *instruction_name, List update_fields,
                              IscWait *wait, List capture_fields, const IscActivityPlaces &places)
{
    return model_new<IscActivity>(bsdl, {.instruction_name = instruction_name,
                                         .update_fields = update_fields.head,
                                         .wait = wait,
                                         .capture_fields = capture_fields.head,
                                         .places = places});
}

List isc_loop(Bsdl *bsdl, int32_t min_loop, int32_t max_loop, List activities, Place place)
{
    auto *start = model_new<IscActivity>(bsdl, {.kind = ISC_ACTIVITY_LOOP_START,
                                                .max_loop = max_loop,
                                                .min_loop = min_loop,
                                                .places = {.all = place}});
    auto *end =
        model_new<IscActivity>(bsdl, {.kind = ISC_ACTIVITY_LOOP_END, .places = {.all = place}});
    return model_append(bsdl, list_join(model_list(bsdl, start), activities), end);
}

IscBlock *isc_block_new(Bsdl *bsdl, int32_t block_type, int32_t repeat_count, List activities,
                        Place place)
{
    return model_new<IscBlock>(bsdl, {.block_type = block_type,
                                      .repeat_count = repeat_count,
                                      .activities = activities.head,
                                      .place = place});
}

// --------------------------------------------------------------------------------------- flows

const char *isc_data_name(Bsdl *bsdl, const char *name)
{
    // SECURITY is no keyword of the scanner but one of the data names of the standard, which are
    // kept in capitals.
    return same_text(name, "SECURITY") ? model_name(bsdl, "SECURITY") : name;
}

IscFlowDescriptor *isc_flow_descriptor_new(Bsdl *bsdl, const char *flow_name, const char *data_name,
                                           int32_t unprocessed, int32_t exit_on_error, Place place)
{
    return model_new<IscFlowDescriptor>(bsdl, {.flow_name = flow_name,
                                               .data_name = data_name,
                                               .unprocessed = unprocessed,
                                               .exit_on_error = exit_on_error,
                                               .place = place});
}

void isc_flow_begins(Bsdl *bsdl) { reading_of(bsdl)->variable_count = 0; }

static const char *flow_key(Bsdl *bsdl, const IscFlowDescriptor *descriptor)
{
    if (!descriptor->data_name)
        return descriptor->flow_name;
    size_t name_length = std::strlen(descriptor->flow_name);
    size_t data_length = std::strlen(descriptor->data_name);
    auto *text = static_cast<char *>(arena_alloc(&bsdl->arena, name_length + 1 + data_length));
    std::memcpy(text, descriptor->flow_name, name_length);
    text[name_length] = '_';
    std::memcpy(text + name_length + 1, descriptor->data_name, data_length);
    return model_name(bsdl, {text, name_length + 1 + data_length});
}

// Doubles the room, in the arena. The tables given up take no more room than the one in use.
static bool grow_keys(Bsdl *bsdl, IscFlowReading *reading)
{
    uint32_t capacity = reading->key_capacity ? 2 * reading->key_capacity : 16;
    auto *keys = arena_array<uint32_t>(&bsdl->arena, capacity);
    if (!keys)
        return false;
    Index index;
    index_start(&index, &bsdl->arena, capacity);
    for (uint32_t i = 0; i < reading->key_count; i++) {
        keys[i] = reading->keys[i];
        index_first(&index, keys[i], i);
    }
    reading->keys = keys;
    reading->key_capacity = capacity;
    reading->key_index = index;
    return true;
}

// False when a flow of the statement has the key already.
static bool note_key(Bsdl *bsdl, uint32_t key)
{
    IscFlowReading *reading = reading_of(bsdl);
    if (reading->key_count == reading->key_capacity && !grow_keys(bsdl, reading))
        return true;
    if (index_first(&reading->key_index, key, reading->key_count) != INDEX_NONE)
        return false;
    reading->keys[reading->key_count++] = key;
    return true;
}

// The copies have no length: only the reading needs it.
static void keep_variables(Bsdl *bsdl, IscFlow *flow)
{
    const IscFlowReading *reading = reading_of(bsdl);
    flow->variable_count = reading->variable_count;
    if (!flow->variable_count)
        return;
    auto count = static_cast<size_t>(flow->variable_count);
    flow->variables = arena_array<IscVariable *>(&bsdl->arena, count + 1);
    if (!flow->variables)
        return;
    for (size_t i = 0; i < count; i++) {
        const IscVariable &variable = reading->variables[i];
        flow->variables[i] =
            model_new<IscVariable>(bsdl, {.name = variable.name, .value = variable.value});
    }
}

IscFlow *isc_flow_new(Bsdl *bsdl, IscFlowDescriptor *descriptor, IscBlock *initialize, List repeats,
                      IscBlock *terminate)
{
    if (!note_key(bsdl, name_fold(flow_key(bsdl, descriptor)))) {
        if (descriptor->data_name)
            rule_message(BSDL_LEVEL_WARNING, 2, {"isc-flow-duplicate", descriptor->place},
                         "flow descriptor %s (%s) exists, ignored", descriptor->flow_name,
                         descriptor->data_name);
        else
            rule_message(BSDL_LEVEL_WARNING, 2, {"isc-flow-duplicate", descriptor->place},
                         "flow descriptor %s exists, ignored", descriptor->flow_name);
        return nullptr;
    }
    List blocks = initialize ? model_list(bsdl, initialize) : List{};
    blocks = list_join(blocks, repeats);
    if (terminate)
        blocks = model_append(bsdl, blocks, terminate);

    auto *flow = model_new<IscFlow>(bsdl, {.descriptor = descriptor, .blocks = blocks.head});
    keep_variables(bsdl, flow);
    return flow;
}

List isc_flow_append(Bsdl *bsdl, List flows, IscFlow *flow)
{
    return flow ? model_append(bsdl, flows, flow) : flows;
}
