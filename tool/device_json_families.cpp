// IEEE 1532, IEEE 1149.6, IEEE 1149.4 and PPC/PRG files as the exports give them.

#include "code_words.h"
#include "device_json.h"

#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

// What was written, not what a float makes of it: 1e-06 instead of 9.99999997e-07.
static Json float_value(float value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.7g", static_cast<double>(value));
    return std::strtod(text, nullptr);
}

// --------------------------------------------------------------------------------- IEEE 1532

static Json security_value(const IscSecurity *security)
{
    if (!security)
        return nullptr;
    const auto bit = [](int32_t position) {
        return position == ISC_SECURITY_ANY ? Json("*") : Json(position);
    };
    return {{"disable_read", bit(security->disable_read)},
            {"disable_program", bit(security->disable_program)},
            {"disable_erase", bit(security->disable_erase)},
            {"disable_key_lsb", bit(security->disable_key_lsb)},
            {"disable_key_msb", bit(security->disable_key_msb)}};
}

static Json expression_value(const IscExpression *expression)
{
    if (!expression)
        return nullptr;
    const int32_t operation = expression->operation;
    const bool has_operand =
        operation == ISC_OPERATION_ADD || operation == ISC_OPERATION_SUBTRACT ||
        operation == ISC_OPERATION_SHIFT_LEFT || operation == ISC_OPERATION_SHIFT_RIGHT;
    return {
        {"operation", word_value(isc_operation_word(operation))},
        {"variable", expression->variable_index < 0 ? Json() : Json(expression->variable_index)},
        {"operand", has_operand ? Json(expression->operand) : Json()},
        {"hex", text_value(expression->hex_string)},
        {"defines_length", expression->is_definition != 0}};
}

static Json activity_value(Bsdl *bsdl, const IscActivityInfo &info)
{
    if (!info.instruction_name) {
        const bool starts = info.v[0] == ISC_ACTIVITY_LOOP_START;
        return {{"kind", starts ? "loop-start" : "loop-end"},
                {"max_loops", info.v[1]},
                {"min_loops", info.v[2]}};
    }
    Json update = Json::array();
    for (const IscUpdateField *field = bsdlIscFirstUpdateStream(bsdl); field;
         field = bsdlIscNextUpdateStream(bsdl))
        update.push_back(
            {{"width", field->field_width}, {"data", expression_value(field->expression)}});
    Json capture = Json::array();
    for (const IscCaptureField *field = bsdlIscFirstCaptureStream(bsdl); field;
         field = bsdlIscNextCaptureStream(bsdl))
        capture.push_back({{"width", field->field_width},
                           {"expected", expression_value(field->expected)},
                           {"expected_output", field->expected_output == ISC_OUTPUT_GIVEN},
                           {"mask", expression_value(field->mask)},
                           {"mask_output", field->mask_output == ISC_OUTPUT_GIVEN},
                           {"tag", word_value(isc_tag_word(field->tag))}});
    return {{"kind", "activity"},          {"instruction", text_value(info.instruction_name)},
            {"min_cycles", info.v[0]},     {"min_time_us", info.v[1]},
            {"max_cycles", info.v[2]},     {"max_time_us", info.v[3]},
            {"update", std::move(update)}, {"capture", std::move(capture)}};
}

static Json block_value(Bsdl *bsdl, int32_t code)
{
    Json activities = Json::array();
    const int32_t count = bsdlIscNbrOfActivities(bsdl);
    for (int32_t i = 0; i < count; i++) {
        const std::unique_ptr<IscActivityInfo, void (*)(IscActivityInfo *)> info(
            i == 0 ? bsdlIscFirstActivity(bsdl) : bsdlIscNextActivity(bsdl), bsdlIscFreeActivity);
        if (info)
            activities.push_back(activity_value(bsdl, *info));
    }
    const char *kind = code == ISC_BLOCK_INITIALIZE  ? "initialize"
                       : code == ISC_BLOCK_TERMINATE ? "terminate"
                                                     : "repeat";
    return {{"kind", kind},
            {"count", code > 0 ? Json(code) : Json()},
            {"activities", std::move(activities)}};
}

using FlowInfo = std::unique_ptr<IscFlowInfo, void (*)(IscFlowInfo *)>;

// The procedure that is selected.
static Json procedure_value(Bsdl *bsdl, const char *name, const char *data_name)
{
    Json flows = Json::array();
    const int32_t count = bsdlIscNbrOfFlows(bsdl);
    for (int32_t i = 0; i < count; i++) {
        const FlowInfo flow(i == 0 ? bsdlIscFirstFlow(bsdl) : bsdlIscNextFlow(bsdl),
                            bsdlIscFreeFlow);
        if (!flow)
            continue;
        Json blocks = Json::array();
        for (int32_t block = bsdlIscFirstFlowBlock(bsdl); block != ISC_BLOCK_NONE;
             block = bsdlIscNextFlowBlock(bsdl))
            blocks.push_back(block_value(bsdl, block));
        flows.push_back({{"name", text_value(flow->flow_name)},
                         {"data", text_value(flow->data_name)},
                         {"unprocessed", (flow->flags & ISC_FLOW_UNPROCESSED) != 0},
                         {"exit_on_error", (flow->flags & ISC_FLOW_EXIT_ON_ERROR) != 0},
                         {"variables", flow->variable_count},
                         {"blocks", std::move(blocks)}});
    }
    return {{"name", text_value(name)}, {"data", text_value(data_name)}, {"flows", flows}};
}

static Json action_value(Bsdl *bsdl, const IscAction &action, std::set<std::string> &seen,
                         std::vector<const IscActionSpec *> &procedures)
{
    Json runs = Json::array();
    for (const IscActionSpec *spec = bsdlIscFirstProc(bsdl); spec; spec = bsdlIscNextProc(bsdl)) {
        runs.push_back({{"procedure", text_value(spec->procedure_name)},
                        {"data", text_value(spec->data_name)},
                        {"proprietary", (spec->attributes & ISC_SPEC_PROPRIETARY) != 0},
                        {"optional", (spec->attributes & ISC_SPEC_OPTIONAL) != 0},
                        {"recommended", (spec->attributes & ISC_SPEC_RECOMMENDED) != 0}});
        const std::string key = runs.back()["procedure"].dump() + runs.back()["data"].dump();
        if (spec->procedure_name && seen.insert(folded(key)).second)
            procedures.push_back(spec);
    }
    return {{"name", text_value(action.action_name)},
            {"data", text_value(action.data_name)},
            {"proprietary", action.exclusivity == ISC_EXCLUSIVITY_PROPRIETARY},
            {"procedures", std::move(runs)}};
}

Json isc_of(Bsdl *bsdl)
{
    Json fixed_pins = Json::array();
    for (const PortId *port = bsdlIscFirstFixedPin(bsdl); port; port = bsdlIscNextFixedPin(bsdl))
        fixed_pins.push_back(port_value(port));
    Json illegal_exit = Json::array();
    for (const char *name = bsdlIscFirstIllegalExit(bsdl); name;
         name = bsdlIscNextIllegalExit(bsdl))
        illegal_exit.push_back(text_value(name));

    std::set<std::string> seen;
    std::vector<const IscActionSpec *> specs;
    Json actions = Json::array();
    for (const IscAction *action = bsdlIscFirstAction(bsdl); action;
         action = bsdlIscNextAction(bsdl))
        actions.push_back(action_value(bsdl, *action, seen, specs));
    // After the actions: a procedure that is taken directly stays selected and hides theirs.
    Json procedures = Json::array();
    for (const IscActionSpec *spec : specs) {
        const FlowInfo selected(bsdlIscGetProc(bsdl, spec->procedure_name, spec->data_name),
                                bsdlIscFreeFlow);
        if (selected)
            procedures.push_back(procedure_value(bsdl, spec->procedure_name, spec->data_name));
    }
    return {{"conformance", word_value(isc_conformance_word(bsdlIscConformance(bsdl)))},
            {"pin_behavior", word_value(isc_pin_behavior_word(bsdlIscPinBehavior(bsdl)))},
            {"status", word_value(isc_status_word(bsdlIscStatus(bsdl)))},
            {"blank_usercode", text_value(bsdlIscBlankUserStream(bsdl))},
            {"security", security_value(bsdlIscSecurity(bsdl))},
            {"fixed_pins", std::move(fixed_pins)},
            {"illegal_exit", std::move(illegal_exit)},
            {"design_warning", text_value(bsdlIscDesignWarning(bsdl))},
            {"actions", std::move(actions)},
            {"procedures", std::move(procedures)}};
}

// -------------------------------------------------------------------------------- IEEE 1149.6

// The record is one for the handle: what it holds is taken before the next step.
static Json pin_behavior_value(const AioPinResult &pin)
{
    const auto if_set = [&](uint32_t flag, auto value) {
        return (pin.flags & flag) ? Json(value) : Json();
    };
    return {{"port", port_value(pin.port)},
            {"select_cell", if_set(AIO_FLAG_SELECT_CELL, pin.select_cell)},
            {"low_pass_time", if_set(AIO_FLAG_LP_TIME, float_value(pin.lp_time))},
            {"high_pass_time", if_set(AIO_FLAG_HP_TIME, float_value(pin.hp_time))},
            {"high_pass_on_chip", (pin.flags & AIO_FLAG_ON_CHIP) != 0},
            {"input_cell", if_set(AIO_FLAG_INPUT_CELL, pin.input_cell)}};
}

Json aio_of(Bsdl *bsdl)
{
    if (!bsdlIsAio(bsdl))
        return nullptr;
    Json pins = Json::array();
    for (const AioPinResult *first = bsdlAioFirstPinBehavior(bsdl); first;
         first = bsdlAioNextPinBehavior(bsdl))
        for (const AioPinResult *port = first; port; port = bsdlAioNextACPort(bsdl))
            for (const AioPinResult *bit = port; bit; bit = bsdlAioNextInputCell(bsdl))
                pins.push_back(pin_behavior_value(*bit));
    const bool conforms = bsdlAioConformance(bsdl) == AIO_CONFORMANCE_1149_6_2003;
    Json json = {{"conformance", word_value(conforms ? "STD_1149_6_2003" : nullptr)}};
    json["extest_pulse"] = nullptr;
    if (const AioPulseResult *pulse = bsdlAioExtestPulse(bsdl))
        json["extest_pulse"] = {{"cycles", pulse->cycle_count}, {"time", float_value(pulse->time)}};
    json["extest_train"] = nullptr;
    if (const AioTrainResult *train = bsdlAioExtestTrain(bsdl))
        json["extest_train"] = {{"pulses", train->pulse_count},
                                {"max_time", float_value(train->max_time)}};
    json["pins"] = std::move(pins);
    return json;
}

// -------------------------------------------------------------------------------- IEEE 1149.4

static Json analog_value(Bsdl *bsdl)
{
    if (!bsdlDot4(bsdl))
        return nullptr;
    Json json;
    json["test_bus"] = nullptr;
    if (const D4AtBus *bus = btslD4AtBus(bsdl))
        json["test_bus"] = {
            {"at1", port_value(bus->at1)}, {"at2", port_value(bus->at2)}, {"values", bus->value}};
    json["partitions"] = Json::array();
    for (const D4Partition *partition = btslD4TbicFirstPartitions(bsdl); partition;
         partition = btslD4TbicNextPartitions(bsdl))
        json["partitions"].push_back(partition->value);
    json["modules"] = Json::array();
    for (const D4Abm *module = btslD4FirstABM(bsdl); module; module = btslD4NextABM(bsdl))
        json["modules"].push_back({{"number", module->abm_number},
                                   {"pin", port_value(module->pin)},
                                   {"values", module->value}});
    return json;
}

// A thread gets all its answers for the component of its first question, so each device asks in a
// thread of its own.
Json analog_of(Bsdl *bsdl) { return std::async(std::launch::async, analog_value, bsdl).get(); }

// ------------------------------------------------------------------------------ PPC/PRG files

static Json channel_value(Bsdl *bsdl, int32_t tap)
{
    Json settings = Json::array();
    for (const PrgComponentSetting *setting = bsdlPrgFirstComponent(bsdl); setting;
         setting = bsdlPrgNextComponent(bsdl))
        settings.push_back({{"part", text_value(setting->part_name)},
                            {"instruction", text_value(setting->instruction_name)},
                            {"register_values", text_value(setting->register_values)}});
    return {{"tap", tap}, {"components", std::move(settings)}};
}

static Json program_value(Bsdl *bsdl, const PrgProgramSpec &program)
{
    const int32_t type = program.program_type;
    const bool is_jcs = (type & PRG_PROGRAM_TYPE_JCS) != 0;
    return {{"part", text_value(program.part_name)},
            {"part_type", text_value(program.part_type)},
            {"type", word_value(program_type_word(type))},
            {"jcs_number", is_jcs ? Json(type - PRG_PROGRAM_TYPE_JCS) : Json()},
            {"in_file", text_value(program.in_file)},
            {"out_file", text_value(program.out_file)},
            {"isc", type == PRG_PROGRAM_TYPE_ISC ? isc_of(bsdl) : Json()}};
}

Json prg_of(Bsdl *bsdl)
{
    Json channels = Json::array();
    const int32_t taps = bsdlPrgNbrOfTaps(bsdl);
    for (int32_t i = 0; i < taps; i++) {
        const int32_t tap = i == 0 ? bsdlPrgFirstTap(bsdl) : bsdlPrgNextTap(bsdl);
        channels.push_back(channel_value(bsdl, tap));
    }
    Json programs = Json::array();
    for (const PrgProgramSpec *program = bsdlPrgFirstProgPart(bsdl); program;
         program = bsdlPrgNextProgPart(bsdl))
        programs.push_back(program_value(bsdl, *program));
    return {{"design", text_value(bsdlPrgDesignName(bsdl))},
            {"revision", text_value(bsdlPrgRevision(bsdl))},
            {"frequency", bsdlPrgFrequency(bsdl)},
            {"channels", std::move(channels)},
            {"programs", std::move(programs)}};
}
