/* device_report: reads one description or PPC/PRG file, has it checked, prints what it holds, and
 * writes the EBST file of a description when a second name is given.
 *
 *     cc -std=c11 device_report.c -o device_report $(pkg-config --cflags --libs tarnlet)
 *     ./device_report device.bsd [device.dsh]
 *
 * docs/guide.md explains it from top to bottom. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <tarnlet/bsdl.h>

/* ------------------------------------------------------------------------------- messages */

struct Verdict {
    int errors;
    int warnings;
};

/* Called by the library for each message, on our thread, while one of its functions runs. */
static void take_message(void *sink_data, BsdlMessage *msg)
{
    struct Verdict *verdict = sink_data;
    const char *rule = bsdlMessageRule();
    /* Lines without a rule are headings, notes and the verdict of a whole check. */
    if (msg->level > BSDL_LEVEL_WARNING || rule == NULL)
        return;
    if (msg->level == BSDL_LEVEL_ERROR)
        verdict->errors++;
    else
        verdict->warnings++;
    if (bsdlMessageFile() != NULL && bsdlMessageLine() > 0)
        fprintf(stderr, "%s:%d: ", bsdlMessageFile(), bsdlMessageLine());
    fprintf(stderr, "%s [%s]\n", msg->text, rule);
}

/* ------------------------------------------------------------------------------ small helps */

static const char *or_dash(const char *text) { return text != NULL ? text : "-"; }

static void print_port(const PortId *port)
{
    if (port == NULL)
        printf("-");
    else if (port->subscripted)
        printf("%s(%d)", port->name, port->subscript);
    else
        printf("%s", port->name);
}

/* ---------------------------------------------------------------------- header and packages */

static void report_header(Bsdl *bsdl)
{
    printf("component %s, file %s\n", or_dash(bsdlComponentName(bsdl)), bsdlFileName(bsdl));
    printf("standards: %s %s %s %s, number %d, conformance %d\n", or_dash(bsdlStandard1149_1(bsdl)),
           or_dash(bsdlStandard1532(bsdl)), or_dash(bsdlStandard1149_6(bsdl)),
           or_dash(bsdlStandardPrg(bsdl)), bsdlStandard(bsdl), bsdlConformance(bsdl));
    for (const char *name = bsdlGetFirstDotALLSpec(bsdl); name != NULL;
         name = bsdlGetNextDotALLSpec(bsdl))
        printf("uses package %s\n", name);
    for (const char *path = bsdlGetFirstDotALLFileSpec(bsdl); path != NULL;
         path = bsdlGetNextDotALLFileSpec(bsdl))
        printf("read package file %s\n", path);
}

/* ---------------------------------------------------------------------------- ports and pins */

static void report_pins(Bsdl *bsdl)
{
    printf("pin mapping %s of %d:", or_dash(bsdlGetDefaultDevicePackage(bsdl)),
           bsdlGetNbrOfPinMaps(bsdl));
    for (int32_t i = 0; i < bsdlGetNbrOfPinMaps(bsdl); i++)
        printf(" %s", or_dash(i == 0 ? bsdlGetFirstPinMap(bsdl) : bsdlGetNextPinMap(bsdl)));
    printf("\n%d pins\n", bsdlGetNbrOfPins(bsdl));
    for (PinEntry *pin = bsdlGetFirstPin(bsdl); pin != NULL; pin = bsdlGetNextPin(bsdl)) {
        printf("  ");
        print_port(bsdlGetPinPortID(pin));
        printf(" pin %s, type %d, function %d\n", or_dash(bsdlGetPinPhysicalName(pin)),
               bsdlGetPinType(pin), bsdlGetPinFunction(pin));
    }
    /* One record serves all pairs of a handle: it is used up before the next call. */
    for (PortGroup *pair = bsdlGetFirstPortGroup(bsdl); pair != NULL;
         pair = bsdlGetNextPortGroup(bsdl)) {
        printf("differential %s: ", pair->type == TWIN_TYPE_VOLTAGE ? "voltage" : "current");
        print_port(pair->representative);
        printf(" and ");
        print_port(pair->associated);
        printf("\n");
    }
}

static void report_tap(Bsdl *bsdl)
{
    const struct {
        const char *name;
        const PortId *port;
    } ports[] = {
        {"TDI", bsdlGetTdiPortId(bsdl)},   {"TDO", bsdlGetTdoPortId(bsdl)},
        {"TMS", bsdlGetTmsPortId(bsdl)},   {"TCK", bsdlGetTckPortId(bsdl)},
        {"TRST", bsdlGetTrstPortId(bsdl)},
    };
    printf("TAP:");
    for (size_t i = 0; i < sizeof ports / sizeof ports[0]; i++) {
        printf(" %s=", ports[i].name);
        print_port(ports[i].port);
    }
    printf(", TCK up to %.0f Hz, halt %d\n", bsdlGetTckFrequency(bsdl), bsdlGetTckHaltState(bsdl));
    for (PortId *port = bsdlGetFirstComplPort(bsdl); port != NULL;
         port = bsdlGetNextComplPort(bsdl)) {
        printf("compliance port ");
        print_port(port);
        printf("\n");
    }
    for (const char *pattern = bsdlGetFirstComplPattern(bsdl); pattern != NULL;
         pattern = bsdlGetNextComplPattern(bsdl))
        printf("compliance pattern %s\n", pattern);
}

/* ------------------------------------------------------------------ instructions, registers */

static void report_instructions(Bsdl *bsdl)
{
    printf("%d instructions of %d bits, capture %s\n", bsdlGetNbrOfInstructions(bsdl),
           bsdlGetInstructionLength(bsdl), or_dash(bsdlGetFirstInstructionCapture(bsdl)));
    for (InstructionEntry *entry = bsdlGetFirstInstruction(bsdl); entry != NULL;
         entry = bsdlGetNextInstruction(bsdl)) {
        printf("  %s", or_dash(bsdlGetInstructionName(entry)));
        for (const char *opcode = bsdlGetFirstInstrPattern(entry); opcode != NULL;
             opcode = bsdlGetNextInstrPattern(entry))
            printf(" %s", opcode);
        printf(", type %d%s, register %s of %d, captures %s\n", bsdlGetInstructionType(entry),
               bsdlIsInstrPreload(entry) ? " (preloads)" : "",
               or_dash(bsdlGetInstrRegisterName(entry)), bsdlGetInstrRegisterLength(entry),
               or_dash(bsdlGetInstrCaptureValue(entry)));
    }
    for (const char *pattern = bsdlGetFirstIdcodePattern(bsdl); pattern != NULL;
         pattern = bsdlGetNextIdcodePattern(bsdl))
        printf("IDCODE %s\n", pattern);
    for (const char *pattern = bsdlGetFirstUsercodePattern(bsdl); pattern != NULL;
         pattern = bsdlGetNextUsercodePattern(bsdl))
        printf("USERCODE %s\n", pattern);
}

/* -------------------------------------------------------------------------- boundary register */

static void report_boundary(Bsdl *bsdl)
{
    printf("boundary register of %d cells\n", bsdlGetBSRLength(bsdl));
    for (CellEntry *cell = bsdlGetFirstCellEntry(bsdl); cell != NULL;
         cell = bsdlGetNextCellEntry(bsdl)) {
        printf("  %d %s ", bsdlGetCellNumber(cell), or_dash(bsdlGetCellName(cell)));
        print_port(bsdlGetCellPort(cell));
        printf(" function %d, safe %d", bsdlGetCellFunction(cell), bsdlGetCellSafeBit(cell));
        if (bsdlGetCellControlCell(cell) >= 0)
            printf(", disabled by %d with %d to %d", bsdlGetCellControlCell(cell),
                   bsdlGetCellDisableValue(cell), bsdlGetCellDisableResult(cell));
        printf("\n");
    }
    int descriptions = 0;
    int captures = 0;
    for (GSList *cell = bsdlGetFirstCellDesc(bsdl); cell != NULL;
         cell = bsdlGetNextCellDesc(bsdl)) {
        descriptions++;
        for (GSList *capture = bsdlGetCellFirstCaptDesc(cell); capture != NULL;
             capture = bsdlGetCellNextCaptDesc(cell))
            captures++;
    }
    printf("%d kinds of cells with %d capture descriptors\n", descriptions, captures);
    if (bsdlDesignWarning(bsdl) != NULL)
        printf("design warning: %s\n", bsdlDesignWarning(bsdl));
}

/* --------------------------------------------------------------------------------- IEEE 1532 */

static void report_flow(Bsdl *bsdl, const IscFlowInfo *flow)
{
    printf("    flow %s(%s)\n", flow->flow_name, or_dash(flow->data_name));
    for (int32_t block = bsdlIscFirstFlowBlock(bsdl); block != ISC_BLOCK_NONE;
         block = bsdlIscNextFlowBlock(bsdl)) {
        printf("      block %d:", block);
        /* The records of activities and flows are ours to give back, those of fields are not. */
        IscActivityInfo *activity = bsdlIscFirstActivity(bsdl);
        while (activity != NULL) {
            printf(" %s", activity->instruction_name != NULL          ? activity->instruction_name
                          : activity->v[0] == ISC_ACTIVITY_LOOP_START ? "{"
                                                                      : "}");
            for (IscUpdateField *field = bsdlIscFirstUpdateStream(bsdl); field != NULL;
                 field = bsdlIscNextUpdateStream(bsdl))
                printf(" in:%d", field->field_width);
            for (IscCaptureField *field = bsdlIscFirstCaptureStream(bsdl); field != NULL;
                 field = bsdlIscNextCaptureStream(bsdl))
                printf(" out:%d", field->field_width);
            bsdlIscFreeActivity(activity);
            activity = bsdlIscNextActivity(bsdl);
        }
        printf("\n");
    }
}

static void report_isc(Bsdl *bsdl)
{
    printf("IEEE 1532: conformance %d, pins %d, status %d, blank USERCODE %s\n",
           bsdlIscConformance(bsdl), bsdlIscPinBehavior(bsdl), bsdlIscStatus(bsdl),
           or_dash(bsdlIscBlankUserStream(bsdl)));
    for (IscAction *action = bsdlIscFirstAction(bsdl); action != NULL;
         action = bsdlIscNextAction(bsdl)) {
        printf("action %s(%s)\n", action->action_name, or_dash(action->data_name));
        for (IscActionSpec *spec = bsdlIscFirstProc(bsdl); spec != NULL;
             spec = bsdlIscNextProc(bsdl)) {
            printf("  procedure %s(%s)\n", spec->procedure_name, or_dash(spec->data_name));
            /* NULL stands for a flow that is named but not defined as well as for the end. */
            const int32_t flows = bsdlIscNbrOfFlows(bsdl);
            for (int32_t i = 0; i < flows; i++) {
                IscFlowInfo *flow = i == 0 ? bsdlIscFirstFlow(bsdl) : bsdlIscNextFlow(bsdl);
                if (flow != NULL)
                    report_flow(bsdl, flow);
                bsdlIscFreeFlow(flow);
            }
        }
    }
}

/* --------------------------------------------------------------- IEEE 1149.6, IEEE 1149.4 */

static void report_aio(Bsdl *bsdl)
{
    printf("IEEE 1149.6: conformance %d\n", bsdlAioConformance(bsdl));
    const AioPulseResult *pulse = bsdlAioExtestPulse(bsdl);
    if (pulse != NULL)
        printf("EXTEST_PULSE waits %d cycles, %g s\n", pulse->cycle_count, pulse->time);
    const AioTrainResult *train = bsdlAioExtestTrain(bsdl);
    if (train != NULL)
        printf("EXTEST_TRAIN sends %d pulses in %g s\n", train->pulse_count, train->max_time);
    /* Descriptions, their ports, the bits of vectors. */
    for (AioPinResult *first = bsdlAioFirstPinBehavior(bsdl); first != NULL;
         first = bsdlAioNextPinBehavior(bsdl))
        for (AioPinResult *port = first; port != NULL; port = bsdlAioNextACPort(bsdl))
            for (AioPinResult *pin = port; pin != NULL; pin = bsdlAioNextInputCell(bsdl)) {
                printf("  AC pin ");
                print_port(pin->port);
                if (pin->flags & AIO_FLAG_HP_TIME)
                    printf(", high pass %g s", pin->hp_time);
                if (pin->flags & AIO_FLAG_INPUT_CELL)
                    printf(", cell %d", pin->input_cell);
                printf("\n");
            }
}

static void report_analog(Bsdl *bsdl)
{
    printf("IEEE 1149.4: %d analog boundary modules\n", btslD4NbrABMs(bsdl));
    for (const D4Abm *module = btslD4FirstABM(bsdl); module != NULL; module = btslD4NextABM(bsdl)) {
        printf("  module %d at ", module->abm_number);
        print_port(module->pin);
        printf("\n");
    }
}

/* ------------------------------------------------------------------------------ PPC/PRG files */

static void report_prg(Bsdl *bsdl)
{
    printf("design %s, revision %s, %d Hz\n", or_dash(bsdlPrgDesignName(bsdl)),
           or_dash(bsdlPrgRevision(bsdl)), bsdlPrgFrequency(bsdl));
    const int32_t taps = bsdlPrgNbrOfTaps(bsdl);
    for (int32_t i = 0; i < taps; i++) {
        printf("channel of tap %d\n", i == 0 ? bsdlPrgFirstTap(bsdl) : bsdlPrgNextTap(bsdl));
        for (PrgComponentSetting *part = bsdlPrgFirstComponent(bsdl); part != NULL;
             part = bsdlPrgNextComponent(bsdl))
            printf("  part %s: %s %s\n", part->part_name, part->instruction_name,
                   part->register_values);
    }
    for (PrgProgramSpec *program = bsdlPrgFirstProgPart(bsdl); program != NULL;
         program = bsdlPrgNextProgPart(bsdl)) {
        printf("program of %s, a %s, type %d\n", program->part_name, program->part_type,
               program->program_type);
        if (program->program_type == PRG_PROGRAM_TYPE_ISC)
            report_isc(bsdl); /* of the program that is selected */
    }
}

/* ----------------------------------------------------------------------------------- EBST */

static int write_ebst(Bsdl *bsdl, const char *path)
{
    if (bsdlSetEbstFile(bsdl, path) != BSDL_RESULT_OK || bsdlGenEbst(bsdl) != BSDL_RESULT_OK ||
        bsdlCreateEbst(bsdl) != BSDL_RESULT_OK)
        return 1;
    printf("EBST file with %d pins, the first %s\n", bsdlGetNrOfEbstPins(bsdl),
           or_dash(bsdlGetEbstPinName(bsdlGetFirstEbstPin(bsdl))));
    return 0;
}

/* ------------------------------------------------------------------------------------- main */

static int report_description(Bsdl *bsdl, const char *ebst_path)
{
    int32_t result = bsdl_check(bsdl);
    if (result == BSDL_RESULT_OK && bsdlIs1532(bsdl))
        result = bsdl_check_isc(bsdl);
    if (result == BSDL_RESULT_OK && bsdlIsAio(bsdl))
        result = bsdl_check_aio(bsdl);
    report_header(bsdl);
    report_pins(bsdl);
    report_tap(bsdl);
    report_instructions(bsdl);
    report_boundary(bsdl);
    if (bsdlIs1532(bsdl))
        report_isc(bsdl);
    if (bsdlIsAio(bsdl))
        report_aio(bsdl);
    if (bsdlDot4(bsdl))
        report_analog(bsdl);
    if (result == BSDL_RESULT_OK && ebst_path != NULL && write_ebst(bsdl, ebst_path) != 0)
        return 1;
    return result == BSDL_RESULT_OK ? 0 : 1;
}

static int report_data_file(Bsdl *bsdl)
{
    const int32_t result = bsdl_check_prg(bsdl);
    report_header(bsdl);
    report_prg(bsdl);
    return result == BSDL_RESULT_OK ? 0 : 1;
}

int main(int argc, char **argv)
{
    if (argc != 2 && argc != 3) {
        fprintf(stderr, "usage: device_report FILE [EBST_FILE]\n");
        return 2;
    }
    /* Both outlive every call of the library. */
    struct Verdict verdict = {0, 0};
    BsdlContext context = {.message_sink = take_message, .sink_data = &verdict, .verbosity = 2};

    Bsdl *bsdl = readBsdl(argv[1], NULL, NULL, 0, &context);
    if (bsdl == NULL)
        return 2;
    int status = bsdlIsPrg(bsdl) ? report_data_file(bsdl)
                                 : report_description(bsdl, argc == 3 ? argv[2] : NULL);
    if (bsdlGetNumErrors(bsdl) > 0)
        status = 1;
    printf("%d errors, %d warnings\n", verdict.errors, verdict.warnings);
    bsdlRelease(bsdl);
    return status;
}
