#include "ask.h"

#include <cstdlib>
#include <cstring>
#include <type_traits>

// No list may grow longer than the pin list, to four million: one that goes on beyond does not end.
static constexpr int LONGEST_LIST = 5000000;

static volatile size_t seen;

static void look(const char *text)
{
    if (text)
        seen = std::strlen(text);
}

template <class... Numbers>
requires(std::is_arithmetic_v<Numbers> &&...) static void look(Numbers... numbers)
{
    seen = (size_t{0} + ... + static_cast<size_t>(numbers != 0));
}

static void look(const PortId *port)
{
    if (port) {
        look(port->name);
        look(port->subscripted, port->subscript);
    }
}

static void look(const PinEntry *const_pin)
{
    auto *pin = const_cast<PinEntry *>(const_pin);
    look(bsdlGetPinPortID(pin));
    look(bsdlGetPinPhysicalName(pin));
    look(bsdlGetPinType(pin), bsdlGetPinFunction(pin));
}

static void look(const PortGroup *group)
{
    if (group) {
        look(group->representative);
        look(group->associated);
    }
}

// `next` goes on beyond the end: it must stay there.
template <class T, class First, class Next, class Look>
static void walk(T (*first)(First), T (*next)(Next), First owner, Look look_at)
{
    int count = 0;
    for (T item = first(owner); item; item = next(owner)) {
        look_at(item);
        if (++count > LONGEST_LIST)
            std::abort();
    }
    look_at(next(owner));
    look_at(next(owner));
}

template <class T, class Owner> static void walk(T (*first)(Owner), T (*next)(Owner), Owner owner)
{
    walk(first, next, owner, [](T item) { look(item); });
}

static void ask_about_instruction(InstructionEntry *e)
{
    look(bsdlGetInstructionName(e));
    look(bsdlGetInstrRegisterName(e));
    look(bsdlGetInstrCaptureValue(e));
    look(bsdlGetInstructionType(e), bsdlIsInstrPreload(e), bsdlGetInstrRegisterLength(e),
         bsdlGetNbrOfInstrPatterns(e));
    walk(bsdlGetFirstInstrPattern, bsdlGetNextInstrPattern, e);
}

static void ask_about_cell(CellEntry *e)
{
    look(bsdlGetCellName(e));
    look(bsdlGetCellEbstName(e));
    look(bsdlGetCellPort(e));
    look(bsdlGetCellNumber(e));
    look(bsdlGetCellFunction(e), bsdlGetCellSafeBit(e));
    look(bsdlGetCellControlCell(e));
    look(bsdlGetCellDisableValue(e), bsdlGetCellDisableResult(e));
}

static void ask_about_cell_desc(GSList *cell)
{
    look(bsdlGetCellDescName(cell));
    look(bsdlGetCellDescPackage(cell));
    walk(bsdlGetCellFirstCaptDesc, bsdlGetCellNextCaptDesc, cell, [](GSList *capt) {
        look(bsdlGetCellCaptContext(capt), bsdlGetCellCaptInstr(capt), bsdlGetCellCaptSource(capt));
    });
}

static void ask_about_header(Bsdl *h)
{
    look(bsdlFileName(h));
    look(bsdlComponentName(h));
    look(bsdlGetDefaultDevicePackage(h));
    look(bsdlStandard1149_1(h));
    look(bsdlStandard1532(h));
    look(bsdlStandard1149_4(h));
    look(bsdlStandard1149_6(h));
    look(bsdlStandardPrg(h));
    seen =
        bsdlIs1990(h) + bsdlIs1994(h) + bsdlIs2001(h) + bsdlIs1532(h) + bsdlIsPrg(h) + bsdlIsAio(h);
    look(bsdlStandard(h), bsdlConformance(h), bsdlGetNumErrors(h));
    walk(bsdlGetFirstDotALLFileSpec, bsdlGetNextDotALLFileSpec, h);
    walk(bsdlGetFirstDotALLSpec, bsdlGetNextDotALLSpec, h);
    walk(bsdlGetFirstCellDesc, bsdlGetNextCellDesc, h, ask_about_cell_desc);
    look(bsdlDesignWarning(h));
    look(bsdlGetCorvaneClass(h, "CLASS"));
    look(bsdlGetCorvaneClass(h, nullptr));
}

static void ask_about_ports(Bsdl *h)
{
    PortId *(*const taps[])(Bsdl *) = {bsdlGetTckPortId, bsdlGetTdiPortId, bsdlGetTmsPortId,
                                       bsdlGetTdoPortId, bsdlGetTrstPortId};
    for (auto *tap : taps)
        look(tap(h));
    seen = static_cast<size_t>(bsdlGetTckFrequency(h) > 0) +
           static_cast<size_t>(bsdlGetTckHaltState(h));
    look(bsdlGetNbrOfPins(h), bsdlGetNbrOfPinMaps(h));
    look(bsdlGetNbrOfPortGroups(h), bsdlGetNbrOfComplPorts(h));
    look(bsdlGetNbrOfComplPatterns(h));
    walk(bsdlGetFirstPin, bsdlGetNextPin, h, [](PinEntry *pin) { look(pin); });
    walk(bsdlGetFirstPinMap, bsdlGetNextPinMap, h);
    walk(bsdlGetFirstPortGroup, bsdlGetNextPortGroup, h, [](PortGroup *group) { look(group); });
    walk(bsdlGetFirstComplPort, bsdlGetNextComplPort, h);
    walk(bsdlGetFirstComplPattern, bsdlGetNextComplPattern, h);
}

static void ask_about_registers(Bsdl *h)
{
    look(bsdlGetInstructionLength(h));
    look(bsdlGetBSRLength(h));
    look(bsdlGetNbrOfInstructions(h), bsdlGetNbrOfInstructionCaptures(h));
    look(bsdlGetNbrOfIdcodePatterns(h), bsdlGetNbrOfUsercodePatterns(h));
    walk(bsdlGetFirstInstruction, bsdlGetNextInstruction, h, ask_about_instruction);
    walk(bsdlGetFirstInstructionCapture, bsdlGetNextInstructionCapture, h);
    walk(bsdlGetFirstIdcodePattern, bsdlGetNextIdcodePattern, h);
    walk(bsdlGetFirstUsercodePattern, bsdlGetNextUsercodePattern, h);
    walk(bsdlGetFirstCellEntry, bsdlGetNextCellEntry, h, ask_about_cell);
    look(bsdlGetNrOfEbstPins(h));
    walk(bsdlGetFirstEbstPin, bsdlGetNextEbstPin, h, [](EbstPin *pin) {
        look(bsdlGetEbstPinNumber(pin));
        look(bsdlGetEbstPinName(pin));
        look(bsdlGetEbstPinType(pin));
    });
}

// ------------------------------------------------------------------------------------- IEEE 1532

static void look(const IscExpression *expression)
{
    if (expression) {
        look(expression->hex_string);
        look(expression->operation, expression->is_definition);
    }
}

static void ask_about_activities(Bsdl *h)
{
    int count = 0;
    look(bsdlIscNbrOfActivities(h));
    for (IscActivityInfo *info = bsdlIscFirstActivity(h); info; info = bsdlIscNextActivity(h)) {
        look(info->instruction_name);
        bsdlIscFreeActivity(info);
        look(bsdlIscNbrOfUpdateStreams(h), bsdlIscNbrOfCaptureStreams(h));
        walk(bsdlIscFirstUpdateStream, bsdlIscNextUpdateStream, h, [](IscUpdateField *field) {
            if (field)
                look(field->expression);
        });
        walk(bsdlIscFirstCaptureStream, bsdlIscNextCaptureStream, h, [](IscCaptureField *field) {
            if (field) {
                look(field->expected);
                look(field->mask);
            }
        });
        if (++count > LONGEST_LIST)
            std::abort();
    }
    bsdlIscFreeActivity(bsdlIscNextActivity(h));
}

static void ask_about_flows(Bsdl *h)
{
    int flows = 0;
    look(bsdlIscNbrOfFlows(h));
    // A flow that is not defined gives NULL before the end.
    const int32_t count = bsdlIscNbrOfFlows(h);
    IscFlowInfo *info = bsdlIscFirstFlow(h);
    while (flows++ <= count) {
        if (info) {
            look(info->flow_name);
            look(info->data_name);
        }
        bsdlIscFreeFlow(info);
        int blocks = 0;
        look(bsdlIscNbrOfFlowBlocks(h));
        for (int32_t block = bsdlIscFirstFlowBlock(h); block; block = bsdlIscNextFlowBlock(h)) {
            ask_about_activities(h);
            if (++blocks > LONGEST_LIST)
                std::abort();
        }
        info = bsdlIscNextFlow(h);
    }
    bsdlIscFreeFlow(info);
}

static void ask_about_isc(Bsdl *h)
{
    look(bsdlIscConformance(h), bsdlIscPinBehavior(h), bsdlIscStatus(h));
    look(bsdlIscBlankUserStream(h));
    look(bsdlIscDesignWarning(h));
    if (const IscSecurity *security = bsdlIscSecurity(h))
        look(security->disable_read, security->disable_key_msb);
    walk(bsdlIscFirstFixedPin, bsdlIscNextFixedPin, h);
    walk(bsdlIscFirstIllegalExit, bsdlIscNextIllegalExit, h);
    look(bsdlIscNbrOfActions(h), bsdlIscNbrOfProcedures(h));
    ask_about_flows(h);
    walk(bsdlIscFirstAction, bsdlIscNextAction, h, [h](IscAction *action) {
        if (!action)
            return;
        look(action->action_name);
        look(action->data_name);
        walk(bsdlIscFirstProc, bsdlIscNextProc, h, [h](IscActionSpec *spec) {
            if (!spec)
                return;
            look(spec->procedure_name);
            look(spec->data_name);
            ask_about_flows(h);
        });
        for (GSList *link = action->specs; link; link = link->next) {
            const auto *spec = static_cast<IscActionSpec *>(link->data);
            bsdlIscSelectProc(h, spec->procedure_name, spec->data_name);
            if (IscFlowInfo *info = bsdlIscGetProc(h, spec->procedure_name, spec->data_name)) {
                look(info->flow_name);
                bsdlIscFreeFlow(info);
                ask_about_flows(h);
            }
        }
    });
    if (IscAction *action = bsdlIscFirstAction(h))
        look(bsdlIscSelectAction(h, action->action_name, action->data_name) ? "" : nullptr);
    bsdlIscSelectAction(h, "PROGRAM", nullptr);
    bsdlIscSelectAction(h, nullptr, "ARRAY");
}

// ----------------------------------------------------------------------- IEEE 1149.6 and 1149.4

static void look(const AioPinResult *pin)
{
    if (pin) {
        look(pin->port);
        seen = pin->flags;
    }
}

static void ask_about_aio(Bsdl *h)
{
    look(bsdlAioConformance(h));
    if (const AioPulseResult *pulse = bsdlAioExtestPulse(h))
        look(pulse->cycle_count);
    if (const AioTrainResult *train = bsdlAioExtestTrain(h))
        look(train->pulse_count);
    look(bsdlAioNbrOfPinBehaviorDescriptions(h));
    bsdlAioNextPinBehavior(h);
    int count = 0;
    for (AioPinResult *pin = bsdlAioFirstPinBehavior(h); pin; pin = bsdlAioNextPinBehavior(h)) {
        do {
            do {
                look(pin);
                if (++count > LONGEST_LIST)
                    std::abort();
                pin = bsdlAioNextInputCell(h);
            } while (pin);
            pin = bsdlAioNextACPort(h);
        } while (pin);
    }
    const PortId nobody = {nullptr, 0, 0};
    bsdlAioThisPinBehavior(h, &nobody);
    for (PinEntry *pin = bsdlGetFirstPin(h); pin && count++ < 300; pin = bsdlGetNextPin(h))
        look(bsdlAioThisPinBehavior(h, bsdlGetPinPortID(pin)));

    bsdlDot4(h);
    if (const D4AtBus *bus = btslD4AtBus(h)) {
        look(bus->at1);
        look(bus->at2);
    }
    look(btslD4NbrABMs(h), btslD4TbicNbrPartitions(h));
    walk(btslD4FirstABM, btslD4NextABM, h, [](const D4Abm *abm) {
        if (abm)
            look(abm->pin);
    });
    walk(btslD4TbicFirstPartitions, btslD4TbicNextPartitions, h, [](const D4Partition *partition) {
        if (partition)
            look(partition->value[5]);
    });
}

// ---------------------------------------------------------------------------------------- PPC/PRG

static void look(const PrgComponentSetting *setting)
{
    if (setting) {
        look(setting->part_name);
        look(setting->instruction_name);
        look(setting->register_values);
    }
}

static void ask_about_program(Bsdl *h, const PrgProgramSpec *program)
{
    if (program) {
        look(program->part_name);
        look(program->part_type);
        look(program->in_file);
        look(program->out_file);
    }
    look(bsdlPrgProgPartName(h));
    look(bsdlPrgProgPartType(h));
    look(bsdlPrgProgInFile(h));
    look(bsdlPrgProgOutFile(h));
    look(bsdlPrgProgProgType(h));
    ask_about_isc(h);
}

static void ask_about_prg(Bsdl *h)
{
    look(bsdlPrgDesignName(h));
    look(bsdlPrgRevision(h));
    look(bsdlPrgFrequency(h));
    int count = 0;
    look(bsdlPrgNbrOfTaps(h));
    for (int32_t tap = bsdlPrgFirstTap(h); tap != -1; tap = bsdlPrgNextTap(h)) {
        look(bsdlPrgCurrTap(h), bsdlPrgNbrOfComponents(h));
        walk(bsdlPrgFirstComponent, bsdlPrgNextComponent, h, [h](PrgComponentSetting *setting) {
            look(setting);
            look(bsdlPrgComponentName(h));
            look(bsdlPrgComponentInstr(h));
        });
        if (const PrgComponentSetting *setting = bsdlPrgFirstComponent(h))
            look(bsdlPrgSelectComponent(h, setting->part_name));
        if (++count > LONGEST_LIST)
            std::abort();
    }
    bsdlPrgSelectTap(h, 1);
    bsdlPrgSelectComponent(h, nullptr);
    look(bsdlPrgNbrOfProgParts(h));
    walk(bsdlPrgFirstProgPart, bsdlPrgNextProgPart, h, [h](PrgProgramSpec *program) {
        ask_about_program(h, program);
        ask_about_program(h, bsdlPrgCurrProgPart(h));
    });
    if (const PrgProgramSpec *program = bsdlPrgFirstProgPart(h))
        ask_about_program(h, bsdlPrgSelectProgPart(h, program->part_name));
}

void ask_everything(Bsdl *h)
{
    ask_about_header(h);
    ask_about_ports(h);
    ask_about_registers(h);
    ask_about_isc(h);
    ask_about_aio(h);
    ask_about_prg(h);
}
