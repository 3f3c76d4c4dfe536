/* A host program as a user of an installed tree writes it: the order of calls of a normal run. */
#include <stdio.h>
#include <string.h>

#include <tarnlet/bsdl.h>

static int failures;

#define EXPECT(condition)                                                                          \
    ((condition)                                                                                   \
         ? (void)0                                                                                 \
         : (void)(fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition), failures++))

struct Log {
    int errors;
    int passed;
};

static void take_message(void *sink_data, BsdlMessage *msg)
{
    struct Log *log = sink_data;
    if (msg->level == BSDL_LEVEL_ERROR) {
        fprintf(stderr, "error: %s\n", msg->text);
        log->errors++;
    }
    if (msg->level == BSDL_LEVEL_INFO && strstr(msg->text, "passed") != NULL)
        log->passed++;
}

static void expect_model(Bsdl *bsdl)
{
    int count = 0;
    for (PinEntry *pin = bsdlGetFirstPin(bsdl); pin != NULL; pin = bsdlGetNextPin(bsdl)) {
        EXPECT(bsdlGetPinPortID(pin) != NULL && bsdlGetPinPortID(pin)->name != NULL);
        count++;
    }
    EXPECT(count > 0 && count == bsdlGetNbrOfPins(bsdl));

    count = 0;
    for (InstructionEntry *e = bsdlGetFirstInstruction(bsdl); e != NULL;
         e = bsdlGetNextInstruction(bsdl)) {
        const char *opcode = bsdlGetFirstInstrPattern(e);
        EXPECT(opcode != NULL && (int)strlen(opcode) == bsdlGetInstructionLength(bsdl));
        count++;
    }
    EXPECT(count > 0 && count == bsdlGetNbrOfInstructions(bsdl));

    int highest = -1;
    for (CellEntry *e = bsdlGetFirstCellEntry(bsdl); e != NULL; e = bsdlGetNextCellEntry(bsdl))
        if (bsdlGetCellNumber(e) > highest)
            highest = bsdlGetCellNumber(e);
    EXPECT(highest + 1 == bsdlGetBSRLength(bsdl));
}

static Bsdl *read_file(const char *file, struct Log *log, BsdlContext *context)
{
    *context = (BsdlContext){.message_sink = take_message, .sink_data = log, .verbosity = 4};
    Bsdl *bsdl = readBsdl(file, NULL, NULL, 0, context);
    if (bsdl == NULL)
        fprintf(stderr, "%s: cannot be read\n", file);
    return bsdl;
}

int main(int argc, char **argv)
{
    if (argc != 4) {
        fprintf(stderr, "usage: host FILE FILE_THAT_NEEDS_A_PACKAGE EBST_FILE\n");
        return 2;
    }

    struct Log log = {0};
    BsdlContext context;
    Bsdl *bsdl = read_file(argv[1], &log, &context);
    if (bsdl == NULL)
        return 1;
    EXPECT(bsdlGetNumErrors(bsdl) == 0);
    EXPECT(bsdlComponentName(bsdl) != NULL);
    EXPECT(bsdlStandard(bsdl) == BSDL_STANDARD_1149_1_2001);
    EXPECT(bsdl_check(bsdl) == BSDL_RESULT_OK);
    EXPECT(log.errors == 0 && log.passed > 0);
    expect_model(bsdl);
    /* Without an EBST file freeBsdl() gives 1. */
    EXPECT(freeBsdl(bsdl) == 1);
    EXPECT(strcmp(bsdlFileName(bsdl), argv[1]) == 0);
    bsdlRelease(bsdl);

    bsdl = read_file(argv[1], &log, &context);
    if (bsdl == NULL)
        return 1;
    EXPECT(bsdl_check(bsdl) == BSDL_RESULT_OK);
    EXPECT(bsdlSetEbstFile(bsdl, argv[3]) == BSDL_RESULT_OK);
    EXPECT(bsdlGenEbst(bsdl) == BSDL_RESULT_OK);
    EXPECT(bsdlCreateEbst(bsdl) == BSDL_RESULT_OK);
    EXPECT(freeBsdl(bsdl) == 0);
    bsdlRelease(bsdl);
    FILE *ebst = fopen(argv[3], "r");
    EXPECT(ebst != NULL && fgetc(ebst) != EOF);
    if (ebst != NULL)
        fclose(ebst);

    /* The packages that are installed beside the library are found without being told. */
    bsdl = read_file(argv[2], &log, &context);
    EXPECT(bsdl != NULL && bsdlGetNumErrors(bsdl) == 0);
    bsdlRelease(bsdl);

    return failures == 0 ? 0 : 1;
}
