// IEEE 1532, IEEE 1149.6, IEEE 1149.4 and PPC/PRG files.

#include "model.h"

#include "code_words.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <thread>

namespace
{

enum BlockKind { INITIALIZE, REPEAT, TERMINATE };

const char *block_kind_word(int32_t kind)
{
    return kind == INITIALIZE  ? "initialize"
           : kind == REPEAT    ? "repeat"
           : kind == TERMINATE ? "terminate"
                               : nullptr;
}

const char *step_kind_word(int32_t kind)
{
    return kind == ISC_ACTIVITY_PLAIN        ? "activity"
           : kind == ISC_ACTIVITY_LOOP_START ? "loop-start"
           : kind == ISC_ACTIVITY_LOOP_END   ? "loop-end"
                                             : nullptr;
}

struct FamilyRecords {
    Codes conformance{"IscConformance", isc_conformance_word};
    Codes pin_behavior{"IscPinBehavior", isc_pin_behavior_word};
    Codes status{"IscStatus", isc_status_word};
    Codes operation{"IscOperation", isc_operation_word};
    Codes tag{"IscTag", isc_tag_word};
    Codes block_kind{"BlockKind", block_kind_word};
    Codes step_kind{"StepKind", step_kind_word};
    Codes program_type{"ProgramType", program_type_word, PRG_PROGRAM_TYPE_JCS};

    Record<5> security{"Security"};
    Record<5> expression{"Expression"};
    Record<2> update_field{"UpdateField"};
    Record<6> capture_field{"CaptureField"};
    Record<8> activity{"Activity"};
    Record<3> loop{"Loop"};
    Record<3> block{"Block"};
    Record<6> flow{"Flow"};
    Record<3> procedure{"Procedure"};
    Record<5> procedure_call{"ProcedureCall"};
    Record<4> action{"Action"};
    Record<10> isc{"Isc"};

    Record<2> extest_pulse{"ExtestPulse"};
    Record<2> extest_train{"ExtestTrain"};
    Record<6> aio_pin{"AioPin"};
    Record<4> aio{"Aio"};

    Record<3> analog_bus{"AnalogBus"};
    Record<3> analog_module{"AnalogModule"};
    Record<3> analog{"Analog"};

    Record<3> component_setting{"ComponentSetting"};
    Record<2> channel{"Channel"};
    Record<7> program{"Program"};
    Record<5> prg{"Prg"};
};

} // namespace

static const FamilyRecords &records()
{
    static const FamilyRecords instance;
    return instance;
}

void load_family_types() { records(); }

// What was written, not what a float makes of it: 1e-06 instead of 9.99999997e-07.
static py::object float_value(float value)
{
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.7g", static_cast<double>(value));
    return py::float_(std::strtod(digits, nullptr));
}

// --------------------------------------------------------------------------------- IEEE 1532

static py::object security_of(const IscSecurity *security)
{
    if (!security)
        return py::none();
    const auto bit = [](int32_t position) {
        return position == ISC_SECURITY_ANY ? text("*") : number(position);
    };
    return records().security(bit(security->disable_read), bit(security->disable_program),
                              bit(security->disable_erase), bit(security->disable_key_lsb),
                              bit(security->disable_key_msb));
}

static py::object expression_value(const IscExpression *expression)
{
    if (!expression)
        return py::none();
    const int32_t operation = expression->operation;
    const bool has_operand =
        operation == ISC_OPERATION_ADD || operation == ISC_OPERATION_SUBTRACT ||
        operation == ISC_OPERATION_SHIFT_LEFT || operation == ISC_OPERATION_SHIFT_RIGHT;
    return records().expression(
        records().operation[operation], number_from(0, expression->variable_index),
        has_operand ? number(expression->operand) : py::none(), text(expression->hex_string),
        truth(expression->is_definition != 0));
}

// An activity is selected by the call that gave `info`.
static py::object step_value(Bsdl *bsdl, const IscActivityInfo &info)
{
    if (!info.instruction_name)
        return records().loop(records().step_kind[info.v[0]], number(info.v[1]), number(info.v[2]));
    Rows update;
    for (const IscUpdateField *field = bsdlIscFirstUpdateStream(bsdl); field;
         field = bsdlIscNextUpdateStream(bsdl))
        update.add(records().update_field(number(field->field_width),
                                          expression_value(field->expression)));
    Rows capture;
    for (const IscCaptureField *field = bsdlIscFirstCaptureStream(bsdl); field;
         field = bsdlIscNextCaptureStream(bsdl))
        capture.add(records().capture_field(
            number(field->field_width), expression_value(field->expected),
            truth(field->expected_output == ISC_OUTPUT_GIVEN), expression_value(field->mask),
            truth(field->mask_output == ISC_OUTPUT_GIVEN), records().tag[field->tag]));
    return records().activity(records().step_kind[ISC_ACTIVITY_PLAIN], text(info.instruction_name),
                              number(info.v[0]), number(info.v[1]), number(info.v[2]),
                              number(info.v[3]), update.tuple(), capture.tuple());
}

static py::object block_value(Bsdl *bsdl, int32_t code)
{
    Rows steps;
    const int32_t count = bsdlIscNbrOfActivities(bsdl);
    for (int32_t i = 0; i < count; i++) {
        const std::unique_ptr<IscActivityInfo, void (*)(IscActivityInfo *)> info(
            i == 0 ? bsdlIscFirstActivity(bsdl) : bsdlIscNextActivity(bsdl), bsdlIscFreeActivity);
        if (info)
            steps.add(step_value(bsdl, *info));
    }
    const BlockKind kind = code == ISC_BLOCK_INITIALIZE  ? INITIALIZE
                           : code == ISC_BLOCK_TERMINATE ? TERMINATE
                                                         : REPEAT;
    return records().block(records().block_kind[kind], number_from(1, code), steps.tuple());
}

using FlowInfo = std::unique_ptr<IscFlowInfo, void (*)(IscFlowInfo *)>;

// The procedure that is selected.
static py::object procedure_value(Bsdl *bsdl, const IscActionSpec &spec)
{
    Rows flows;
    const int32_t count = bsdlIscNbrOfFlows(bsdl);
    for (int32_t i = 0; i < count; i++) {
        const FlowInfo flow(i == 0 ? bsdlIscFirstFlow(bsdl) : bsdlIscNextFlow(bsdl),
                            bsdlIscFreeFlow);
        if (!flow)
            continue;
        Rows blocks;
        for (int32_t block = bsdlIscFirstFlowBlock(bsdl); block != ISC_BLOCK_NONE;
             block = bsdlIscNextFlowBlock(bsdl))
            blocks.add(block_value(bsdl, block));
        flows.add(records().flow(text(flow->flow_name), text(flow->data_name),
                                 truth((flow->flags & ISC_FLOW_UNPROCESSED) != 0),
                                 truth((flow->flags & ISC_FLOW_EXIT_ON_ERROR) != 0),
                                 number(flow->variable_count), blocks.tuple()));
    }
    return records().procedure(text(spec.procedure_name), text(spec.data_name), flows.tuple());
}

// A procedure as a key: names of the language are the same whatever the case of their letters.
static std::string procedure_key(const IscActionSpec &spec)
{
    std::string key = spec.procedure_name;
    if (spec.data_name)
        key.append("(").append(spec.data_name);
    for (char &c : key)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return key;
}

static py::object action_value(Bsdl *bsdl, const IscAction &action, std::set<std::string> &seen,
                               std::vector<const IscActionSpec *> &procedures)
{
    Rows calls;
    for (const IscActionSpec *spec = bsdlIscFirstProc(bsdl); spec; spec = bsdlIscNextProc(bsdl)) {
        calls.add(records().procedure_call(text(spec->procedure_name), text(spec->data_name),
                                           truth((spec->attributes & ISC_SPEC_PROPRIETARY) != 0),
                                           truth((spec->attributes & ISC_SPEC_OPTIONAL) != 0),
                                           truth((spec->attributes & ISC_SPEC_RECOMMENDED) != 0)));
        if (spec->procedure_name && seen.insert(procedure_key(*spec)).second)
            procedures.push_back(spec);
    }
    return records().action(text(action.action_name), text(action.data_name),
                            truth(action.exclusivity == ISC_EXCLUSIVITY_PROPRIETARY),
                            calls.tuple());
}

py::object isc_of(Bsdl *bsdl)
{
    Rows fixed_pins;
    for (const PortId *port = bsdlIscFirstFixedPin(bsdl); port; port = bsdlIscNextFixedPin(bsdl))
        fixed_pins.add(port_bit(port));
    std::set<std::string> seen;
    std::vector<const IscActionSpec *> specs;
    Rows actions;
    for (const IscAction *action = bsdlIscFirstAction(bsdl); action;
         action = bsdlIscNextAction(bsdl))
        actions.add(action_value(bsdl, *action, seen, specs));
    // After the actions: a procedure that is taken directly stays selected and hides theirs.
    Rows procedures;
    for (const IscActionSpec *spec : specs) {
        const FlowInfo selected(bsdlIscGetProc(bsdl, spec->procedure_name, spec->data_name),
                                bsdlIscFreeFlow);
        if (selected)
            procedures.add(procedure_value(bsdl, *spec));
    }
    return records().isc(records().conformance[bsdlIscConformance(bsdl)],
                         records().pin_behavior[bsdlIscPinBehavior(bsdl)],
                         records().status[bsdlIscStatus(bsdl)], text(bsdlIscBlankUserStream(bsdl)),
                         security_of(bsdlIscSecurity(bsdl)), fixed_pins.tuple(),
                         texts(bsdl, bsdlIscFirstIllegalExit, bsdlIscNextIllegalExit),
                         text(bsdlIscDesignWarning(bsdl)), actions.tuple(), procedures.tuple());
}

// -------------------------------------------------------------------------------- IEEE 1149.6

// The record is one for the handle: what it holds is taken before the next step.
static py::object aio_pin_value(const AioPinResult &pin)
{
    const auto if_set = [&](uint32_t flag, py::object value) {
        return (pin.flags & flag) != 0 ? value : py::none();
    };
    return records().aio_pin(port_bit(pin.port),
                             if_set(AIO_FLAG_SELECT_CELL, number(pin.select_cell)),
                             if_set(AIO_FLAG_LP_TIME, float_value(pin.lp_time)),
                             if_set(AIO_FLAG_HP_TIME, float_value(pin.hp_time)),
                             truth((pin.flags & AIO_FLAG_ON_CHIP) != 0),
                             if_set(AIO_FLAG_INPUT_CELL, number(pin.input_cell)));
}

py::object aio_of(Bsdl *bsdl)
{
    if (!bsdlIsAio(bsdl))
        return py::none();
    Rows pins;
    for (const AioPinResult *first = bsdlAioFirstPinBehavior(bsdl); first;
         first = bsdlAioNextPinBehavior(bsdl))
        for (const AioPinResult *port = first; port; port = bsdlAioNextACPort(bsdl))
            for (const AioPinResult *bit = port; bit; bit = bsdlAioNextInputCell(bsdl))
                pins.add(aio_pin_value(*bit));
    const bool conforms = bsdlAioConformance(bsdl) == AIO_CONFORMANCE_1149_6_2003;
    const AioPulseResult *pulse = bsdlAioExtestPulse(bsdl);
    const AioTrainResult *train = bsdlAioExtestTrain(bsdl);
    return records().aio(
        text(conforms ? "STD_1149_6_2003" : nullptr),
        pulse ? records().extest_pulse(number(pulse->cycle_count), float_value(pulse->time))
              : py::none(),
        train ? records().extest_train(number(train->pulse_count), float_value(train->max_time))
              : py::none(),
        pins.tuple());
}

// -------------------------------------------------------------------------------- IEEE 1149.4

namespace
{

struct AnalogEntries {
    bool known = false;
    const D4AtBus *bus = nullptr;
    std::vector<const D4Partition *> partitions;
    std::vector<const D4Abm *> modules;
};

} // namespace

static AnalogEntries analog_entries(Bsdl *bsdl)
{
    AnalogEntries entries;
    entries.known = bsdlDot4(bsdl) != 0;
    entries.bus = btslD4AtBus(bsdl);
    for (const D4Partition *each = btslD4TbicFirstPartitions(bsdl); each;
         each = btslD4TbicNextPartitions(bsdl))
        entries.partitions.push_back(each);
    for (const D4Abm *each = btslD4FirstABM(bsdl); each; each = btslD4NextABM(bsdl))
        entries.modules.push_back(each);
    return entries;
}

// A thread gets all its answers for the component of its first question, so each device asks in a
// thread of its own. The entries are constant and stay.
py::object analog_of(Bsdl *bsdl)
{
    AnalogEntries entries;
    std::thread([&] { entries = analog_entries(bsdl); }).join();
    if (!entries.known)
        return py::none();
    Rows partitions;
    for (const D4Partition *each : entries.partitions)
        partitions.add(numbers(each->value));
    Rows modules;
    for (const D4Abm *each : entries.modules)
        modules.add(records().analog_module(number(each->abm_number), port_bit(each->pin),
                                            numbers(each->value)));
    const D4AtBus *bus = entries.bus;
    return records().analog(
        bus ? records().analog_bus(port_bit(bus->at1), port_bit(bus->at2), numbers(bus->value))
            : py::none(),
        partitions.tuple(), modules.tuple());
}

// ------------------------------------------------------------------------------ PPC/PRG files

// The channel that is selected.
static py::object channel_value(Bsdl *bsdl, int32_t tap)
{
    Rows settings;
    for (const PrgComponentSetting *setting = bsdlPrgFirstComponent(bsdl); setting;
         setting = bsdlPrgNextComponent(bsdl))
        settings.add(records().component_setting(text(setting->part_name),
                                                 text(setting->instruction_name),
                                                 text(setting->register_values)));
    return records().channel(number(tap), settings.tuple());
}

// The program that is selected.
static py::object program_value(Bsdl *bsdl, const PrgProgramSpec &program)
{
    const int32_t type = program.program_type;
    const bool is_jcs = (type & PRG_PROGRAM_TYPE_JCS) != 0;
    return records().program(text(program.part_name), text(program.part_type),
                             records().program_type[is_jcs ? PRG_PROGRAM_TYPE_JCS : type],
                             is_jcs ? number(type - PRG_PROGRAM_TYPE_JCS) : py::none(),
                             text(program.in_file), text(program.out_file),
                             type == PRG_PROGRAM_TYPE_ISC ? isc_of(bsdl) : py::none());
}

py::object prg_of(Bsdl *bsdl)
{
    Rows channels;
    const int32_t taps = bsdlPrgNbrOfTaps(bsdl);
    for (int32_t i = 0; i < taps; i++)
        channels.add(channel_value(bsdl, i == 0 ? bsdlPrgFirstTap(bsdl) : bsdlPrgNextTap(bsdl)));
    Rows programs;
    for (const PrgProgramSpec *program = bsdlPrgFirstProgPart(bsdl); program;
         program = bsdlPrgNextProgPart(bsdl))
        programs.add(program_value(bsdl, *program));
    return records().prg(text(bsdlPrgDesignName(bsdl)), text(bsdlPrgRevision(bsdl)),
                         number(bsdlPrgFrequency(bsdl)), channels.tuple(), programs.tuple());
}
