// The EBST file, section by section in its order. The formats are those of the file; "-" stands for
// what does not apply.

#include "boundary/boundary.h"
#include "ebst/ebst.h"
#include "ebst/output_file.h"
#include "frame/check.h"
#include "frame/texts.h"
#include "header/header.h"
#include "ports/ports.h"
#include "registers/registers.h"

#include <climits>
#include <cstring>
#include <ctime>

#include <unistd.h>

namespace
{

constexpr const char *WRITER = "tarnlet32.dll 1.7.2.6 - 20170726 Win64/AS";
// Longer registers without a capture pattern have none in the file.
constexpr int32_t LONGEST_UNKNOWN_CAPTURE = 1024;

} // namespace

// The blanks that bring a field to its width.
static void put_blanks(OutputFile *file, size_t length, size_t width)
{
    put_padded(file, "", width > length ? width - length : 0);
}

// A text in double quotes, which count for the width.
static void put_quoted(OutputFile *file, const char *text, size_t width)
{
    size_t length = std::strlen(text);
    put(file, '"');
    put(file, text, length);
    put(file, '"');
    put_blanks(file, length + 2, width);
}

static void put_banner(OutputFile *file, int stars)
{
    for (int i = 0; i < stars; i++)
        put(file, '*');
    put(file, '\n');
}

// -------------------------------------------------------------------------------------- file names

static bool has_drive(const char *path)
{
    char letter = static_cast<char>(path[0] | 0x20);
    return letter >= 'a' && letter <= 'z' && path[1] == ':';
}

static const char *last_component(const char *path)
{
    const char *component = has_drive(path) ? path + 2 : path;
    for (const char *at = component; *at; at++)
        if (*at == '/' || *at == '\\')
            component = at + 1;
    return component;
}

// The last part of the description's name with the suffix .dsh, in the current directory.
static const char *derived_file_name(Bsdl *bsdl)
{
    static constexpr char SUFFIX[] = ".dsh";
    const char *name = last_component(shown(bsdl->file_name));
    const char *dot = std::strrchr(name, '.');
    size_t stem = dot ? static_cast<size_t>(dot - name) : std::strlen(name);
    auto *derived = static_cast<char *>(arena_alloc(&bsdl->arena, stem + sizeof SUFFIX));
    std::memcpy(derived, name, stem);
    std::memcpy(derived + stem, SUFFIX, sizeof SUFFIX);
    return derived;
}

static void put_doubling_backslashes(OutputFile *file, const char *path)
{
    for (; *path; path++) {
        if (*path == '\\')
            put(file, '\\');
        put(file, *path);
    }
}

// ------------------------------------------------------------------------------------------ header

static void put_time_stamp(OutputFile *file)
{
    // Local time under the name of GMT: readers of the file know it so.
    time_t now = std::time(nullptr);
    tm local = {};
    localtime_r(&now, &local);
    put_line(file, "  \"%04d-%02d-%02d %02d:%02d:%02d GMT%s\"\n", local.tm_year + 1900,
             local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, "0");
}

static void put_back_reference(OutputFile *file, const Bsdl *bsdl)
{
    if (!(bsdl->data->check_passed & CHECK_PASSED_ISC)) {
        put(file, "  \"BSDL \"  ** NO 1532 back reference **\n");
        return;
    }
    const char *name = shown(bsdl->file_name);
    put(file, "  \"BSDL ");
    if (name[0] != '/' && name[0] != '\\' && !has_drive(name)) {
        char directory[PATH_MAX];
        put_doubling_backslashes(file, getcwd(directory, sizeof directory) ? directory : ".");
        put(file, '/');
    }
    put_doubling_backslashes(file, name);
    put(file, "\"  ** 1532 back reference **\n");
}

static void put_header(OutputFile *file, const Bsdl *bsdl)
{
    put(file, "EBST\n\n");
    put(file, "EBST_HEADER\n");
    put(file, "  CREATION_LOG\n");
    put_time_stamp(file);
    put(file, "  \"Corvane\"\n");
    put_line(file, "  \"%s created by %s\"\n", last_component(bsdl->ebst_file_name), WRITER);
    put_back_reference(file, bsdl);
    put(file, "END EBST_HEADER\n");
    put_line(file, "\nCOMPONENT \"%s\"\n", shown(bsdl->data->component_name));
    // The same for a description of any issue.
    put(file, "\nSTANDARD : IEEE_1149.1_1990\n");
}

// ---------------------------------------------------------------------------------------- PIN_LIST

static void put_pin(OutputFile *file, const EbstPin *pin)
{
    // "  %-12s %-16s %-6s %s\n"
    put(file, "  ");
    put_quoted(file, pin->number, 12);
    put(file, ' ');
    put_padded(file, pin->name, 16);
    put(file, ' ');
    put_padded(file, ebst_type_name(pin->type), 6);
    put(file, " -\n");
}

static void put_pin_list(OutputFile *file, const Ebst *ebst)
{
    put(file, "\nPIN_LIST\n");
    put_banner(file, 47);
    put(file, "* PIN          PIN              PIN    PIN    *\n");
    put(file, "* NR           NAME             TYPE   FAMILY *\n");
    put_banner(file, 47);
    for (const EbstPin *pin : items<EbstPin>(ebst->pins)) {
        if (pin->number)
            put_pin(file, pin);
    }
    put_banner(file, 47);
    put(file, "END PIN_LIST\n");
}

// ---------------------------------------------------------------------------- INSTRUCTION_REGISTER

// The first pattern with X wherever another one differs or has ended.
static const char *merged_capture(Bsdl *bsdl, const GSList *patterns)
{
    if (!patterns)
        return nullptr;
    const auto *first = static_cast<const char *>(patterns->data);
    char *merged = arena_text(&bsdl->arena, first, std::strlen(first));
    for (const char *other : items<char>(patterns->next)) {
        for (char *at = merged; *at; at++) {
            if (*at != *other)
                *at = 'X';
            if (*other)
                other++;
        }
    }
    return merged;
}

static bool is_private(const InstructionEntry *instruction)
{
    return instruction->type == INSTRUCTION_TYPE_PRIVATE &&
           (!instruction->data_register || !instruction->data_register->name);
}

static const char *instruction_column(const InstructionEntry *instruction)
{
    if (instruction->flags & INSTRUCTION_PRELOADS)
        return "SAMPLE_PRELOAD";
    return same_text(instruction->name, "PRIVATE") ? "PRIVATE_" : shown(instruction->name);
}

static const char *register_column(const InstructionEntry *instruction)
{
    const char *name = instruction->data_register ? instruction->data_register->name : nullptr;
    if (is_private(instruction))
        return "-";
    if (same_text(instruction->name, "IDCODE"))
        return "IDENT";
    if (same_text(instruction->name, "USERCODE"))
        return "USERCODE";
    if (!name)
        return "-";
    if (same_text(instruction->name, "RUNBIST") && same_text(name, "BYPASS"))
        return "BOUNSCAN";
    if (same_text(name, "BOUNDARY"))
        return "BOUNSCAN";
    if (same_text(name, "DEVICE_ID") || same_text(name, "IDCODE"))
        return "IDENT";
    return name;
}

static const char *mode_column(const InstructionEntry *instruction)
{
    static constexpr struct {
        const char *instruction, *mode;
    } MODES[] = {
        {"EXTEST", "EXTERNAL"},  {"CLAMP", "EXTERNAL"}, {"INTEST", "INTERNAL"},
        {"RUNBIST", "INTERNAL"}, {"HIGHZ", "-"},
    };
    for (const auto &row : MODES)
        if (same_text(instruction->name, row.instruction))
            return row.mode;
    return "SAMPLE";
}

static void put_opcode(OutputFile *file, const char *pattern, char for_x)
{
    put(file, '"');
    for (const char *at = pattern; *at; at++)
        put(file, *at == 'X' || *at == 'x' ? for_x : *at);
    put(file, '"');
    put_blanks(file, std::strlen(pattern) + 2, 10);
}

static void put_instruction(OutputFile *file, const InstructionEntry *instruction)
{
    const char *name = register_column(instruction);
    for (const char *pattern : items<char>(instruction->patterns)) {
        // "%c %-18s %-10s %-12s %-8s %-10s\n"
        put_line(file, "%c %-18s ", is_private(instruction) ? '*' : ' ',
                 instruction_column(instruction));
        put_opcode(file, pattern, same_text(instruction->name, "EXTEST") ? '0' : '1');
        put_line(file, " %-12s %-8s %-10s\n", name, mode_column(instruction), name);
    }
}

static void put_instruction_register(OutputFile *file, Bsdl *bsdl)
{
    const InstructionRegister *record = bsdl->data->instruction_register;
    put(file, "\nINSTRUCTION_REGISTER instr\n\n");
    put(file, "PURPOSE             : \"select register and BST mode\"\n");
    put_line(file, "LENGTH              : %i\n", static_cast<int32_t>(record->length));
    put_line(file, "CAPTURE             : \"%s\"\n\n",
             shown(merged_capture(bsdl, record->capture_patterns)));
    put(file, "INSTRUCTION_LIST\n");
    put_banner(file, 67);
    put(file, "* INSTR              INSTR        SELECTED     BST      ACTIVE    *\n");
    put(file, "* NAME               VALUE        REGISTER     MODE     REGISTER  *\n");
    put_banner(file, 67);
    for (const InstructionEntry *instruction : items<InstructionEntry>(record->opcode_table))
        put_instruction(file, instruction);
    put_banner(file, 67);
    put(file, "END INSTRUCTION_LIST\n\n");
    put(file, "END INSTRUCTION_REGISTER\n\n");
}

// ------------------------------------------------------------------------------------- CELL blocks

static void put_cell(OutputFile *file, const EbstCell *cell)
{
    put_line(file, "CELL %s\n\n", shown(cell->name));
    if (cell->init_update)
        put_line(file, "INIT_UPDATE         : \"%c\"\n\n", cell->init_update);
    put(file, "DATA_INPUTS         : PI\n");
    put(file, "DATA_OUTPUTS        : PO\n");
    put(file, "\nMODE_LIST\n");
    put_banner(file, 50);
    put(file, "* MODE     SELECT   CAPTURE  PO                  *\n");
    put_banner(file, 50);
    for (const CaptDesc *const *capture = cell->captures; *capture; capture++)
        put_line(file, "  %-8s %-8s %-8s %-8s\n", instruction_class_name((*capture)->capt_instr),
                 "-", capture_source_name((*capture)->data_source), "-");
    put_banner(file, 50);
    put(file, "END MODE_LIST\n");
    put(file, "\nEND CELL\n\n\n");
}

// -------------------------------------------------------------------------- BOUNDARY_SCAN_REGISTER

static void put_pin_number(OutputFile *file, const char *number)
{
    if (number)
        put_quoted(file, number, 8);
    else
        put_padded(file, "-", 8);
}

static void put_position(OutputFile *file, const int32_t *position)
{
    if (position)
        put_padded(file, *position, 5);
    else
        put_padded(file, "-", 5);
}

static void put_chain_entry(OutputFile *file, const EbstChainEntry *entry)
{
    // "  %-5d %-15s %-15s %-8s %-8s %-5s %-5s %s\n"
    put(file, "  ");
    put_padded(file, entry->position, 5);
    put(file, ' ');
    put_padded(file, shown(entry->cell_name), 15);
    put(file, ' ');
    put_padded(file, shown(entry->pin_name), 15);
    put(file, ' ');
    put_pin_number(file, entry->data_input);
    put(file, ' ');
    put_pin_number(file, entry->data_output);
    put(file, ' ');
    put_position(file, entry->select_position);
    put(file, ' ');
    put_position(file, entry->control_position);
    put(file, ' ');
    put(file, entry->disable_value ? entry->disable_value : "-");
    put(file, '\n');
}

static void put_boundary_register(OutputFile *file, const Ebst *ebst)
{
    put(file, "BOUNDARY_SCAN_REGISTER BOUNSCAN\n\n");
    put(file, "PURPOSE             : \"scan line along boundary\"\n");
    put_line(file, "LENGTH              : %i\n\n", ebst->boundary_length);
    put(file, "CHAIN_LIST\n");
    put_banner(file, 75);
    put(file, "* CHAIN CELL            PIN             DATA     DATA     SEL   CNTRL DIS *\n");
    put(file, "* POS   NAME            NAME            INPUT    OUTPUT   POS   POS   VAL *\n");
    put_banner(file, 75);
    for (const EbstChainEntry *entry : items<EbstChainEntry>(ebst->chain))
        put_chain_entry(file, entry);
    put_banner(file, 79); /* as is: wider than the others */
    put(file, "END CHAIN_LIST\n\n");
    put(file, "END BOUNDARY_SCAN_REGISTER\n\n");
}

// ------------------------------------------------------------------------ identification registers

// One field of an IDCODE pattern; empty where a pattern of another length has none.
static void put_idcode_field(OutputFile *file, const char *label, const char *pattern, size_t start,
                             size_t width)
{
    size_t length = std::strlen(pattern);
    if (start > length)
        start = length;
    put_line(file, "%s: \"%.*s\"\n", label, static_cast<int>(width), pattern + start);
}

static void put_identification_register(OutputFile *file, const char *pattern)
{
    put_line(file, "\nIDENTIFICATION_REGISTER %s\n\n", "IDENT");
    put(file, "PURPOSE             : \"device identification\"\n");
    put(file, "LENGTH              : 32\n");
    put_line(file, "CAPTURE             : \"%s\"\n", pattern);
    put_idcode_field(file, "MANUFACTURER_IDCODE ", pattern, 20, 11);
    put_idcode_field(file, "PARTNUMBER_IDCODE   ", pattern, 4, 16);
    put_idcode_field(file, "VERSION_IDCODE      ", pattern, 0, 4);
    put(file, "\nEND IDENTIFICATION_REGISTER\n\n");
}

static void put_usercode_register(OutputFile *file, const char *pattern)
{
    put_line(file, "\nUSERCODE_REGISTER %s\n\n", "USERCODE");
    put(file, "PURPOSE             : \"unknown\"\n");
    put(file, "LENGTH              : 32\n");
    put_line(file, "CAPTURE             : \"%s\"\n\n", pattern);
    put(file, "END USERCODE_REGISTER\n\n");
}

// --------------------------------------------------------------------------- BIST_REGISTER, BYPASS

static bool holds_runbist(const RegisterEntry *entry)
{
    for (const InstructionCapture *capture : items<InstructionCapture>(entry->captures))
        if (same_text(capture->name, "RUNBIST"))
            return true;
    return false;
}

// The last register that holds RUNBIST. All of them count as self-test registers from now on, so
// that none comes out as a data register too.
static const char *mark_bist_registers(const GSList *registers)
{
    const char *name = nullptr;
    for (RegisterEntry *entry : items<RegisterEntry>(registers)) {
        if (holds_runbist(entry)) {
            entry->kind = REGISTER_KIND_BIST;
            name = entry->name;
        }
    }
    return name;
}

static void put_bist_register(OutputFile *file, const BsdlData *data)
{
    const RunbistSpec *runbist = data->runbist;
    const char *signature = shown(runbist->signature);
    put_line(file, "\nBIST_REGISTER %s\n\n", shown(mark_bist_registers(data->register_access)));
    put(file, "PURPOSE             : \"bist\"\n");
    put_line(file, "LENGTH              : %i\n", static_cast<int32_t>(std::strlen(signature)));
    put_line(file, "CAPTURE             : \"%s\"\n", signature);
    // A duration in seconds has no line, and the block no blank line before its end.
    if (runbist->wait && runbist->wait->wait_time == 0 && runbist->wait->clock_cycles) {
        const void *first = runbist->wait->clock_cycles->data;
        put_line(file, "MIN_DURATION        : %i\n\n",
                 static_cast<const ClockCycles *>(first)->cycle_count);
    }
    put(file, "END BIST_REGISTER\n\n");
}

static void put_bypass_register(OutputFile *file)
{
    put(file, "\nBYPASS_REGISTER BYPASS\n\n");
    put(file, "PURPOSE             : \"short cut\"\n");
    put(file, "LENGTH              : 1\n");
    put(file, "CAPTURE             : \"0\"\n\n");
    put(file, "END BYPASS_REGISTER\n\n");
}

// ----------------------------------------------------------------------------------- DATA_REGISTER

static void put_register_capture(OutputFile *file, const RegisterEntry *entry)
{
    for (const InstructionCapture *record : items<InstructionCapture>(entry->captures))
        if (record->capture) {
            put(file, record->capture);
            return;
        }
    if (entry->length <= LONGEST_UNKNOWN_CAPTURE)
        for (int32_t i = 0; i < entry->length; i++)
            put(file, 'X');
}

static void put_data_register(OutputFile *file, const RegisterEntry *entry)
{
    put_line(file, "\nDATA_REGISTER %s\n\n", shown(entry->name));
    put(file, "PURPOSE             : \"unknown\"\n");
    put_line(file, "LENGTH              : %i\n", entry->length);
    put(file, "CAPTURE             : \"");
    put_register_capture(file, entry);
    put(file, "\"\n\n");
    put(file, "END DATA_REGISTER\n\n");
}

// Registers in the order of the instructions that select them, each once for a reading: the marks
// stay, so a second file has none.
static void put_data_registers(OutputFile *file, const GSList *instructions)
{
    for (const InstructionEntry *instruction : items<InstructionEntry>(instructions)) {
        RegisterEntry *entry = instruction->data_register;
        if (!entry || entry->written)
            continue;
        if (entry->kind == REGISTER_KIND_USER)
            put_data_register(file, entry);
        entry->written = 1;
    }
}

// ----------------------------------------------------------------------------------- GLOBAL_FAMILY

static void put_global_family(OutputFile *file, const BsdlData *data)
{
    const ClockRecord *clock = data->scan_port ? data->scan_port->clock : nullptr;
    double frequency = clock ? clock->frequency : 0.0;
    put_line(file, "\nGLOBAL_FAMILY \"%s\"\n\n", shown(data->component_name));
    put_line(file, "TCK_STOP_AT_ONE     : %s\n",
             clock && clock->halt_state != HALT_STATE_LOW ? "YES" : "NO");
    const NumberText hertz = scientific_text(frequency, 2);
    put_line(file, "TEST_FREQUENCY      : 0 %s %s\n", hertz.text, hertz.text);
    put(file, "TEMPERATURE_RANGE   : - - -\n\n");
    put(file, "END GLOBAL_FAMILY\n\n");
}

// ------------------------------------------------------------------------------------- the exports

static void put_file(OutputFile *file, Bsdl *bsdl)
{
    const BsdlData *data = bsdl->data;
    const Ebst *ebst = bsdl->ebst;
    const GSList *idcodes = data->id_registers->idcode_patterns;
    const GSList *usercodes = data->id_registers->usercode_patterns;

    put_header(file, bsdl);
    put_pin_list(file, ebst);
    put_instruction_register(file, bsdl);
    for (const EbstCell *cell : items<EbstCell>(ebst->cells))
        put_cell(file, cell);
    put_boundary_register(file, ebst);
    if (idcodes)
        put_identification_register(file, static_cast<const char *>(idcodes->data));
    if (usercodes)
        put_usercode_register(file, static_cast<const char *>(usercodes->data));
    if (data->runbist)
        put_bist_register(file, data);
    put_bypass_register(file);
    put_data_registers(file, data->instruction_register->opcode_table);
    put_global_family(file, data);
    put(file, "END COMPONENT\n\n");
    put(file, "END EBST\n");
}

int32_t bsdlSetEbstFile(Bsdl *bsdl, const char *file_name)
{
    const Call call(bsdl);
    if (call.code)
        return call.code;
    if (!file_name)
        return BSDL_RESULT_NO_NAME;
    bsdl->ebst_file_name = model_text(bsdl, file_name);
    return BSDL_RESULT_OK;
}

int32_t bsdlCreateEbst(Bsdl *bsdl)
{
    const Call call(bsdl);
    if (call.code)
        return call.code;
    if (!bsdl->ebst)
        return BSDL_RESULT_MISSING;
    if (!bsdl->ebst_file_name)
        bsdl->ebst_file_name = derived_file_name(bsdl);
    const char *name = bsdl->ebst_file_name;

    OutputFile file;
    if (!output_open(&file, name))
        return rule_message(BSDL_LEVEL_ERROR, 1, {"ebst-file-open"}, "Cannot open file '%s'", name);
    rule_message(BSDL_LEVEL_PHASE, 1, {}, "Generating EBST file '%s'", name);
    put_file(&file, bsdl);
    if (!output_close(&file))
        return rule_message(BSDL_LEVEL_ERROR, 1, {"ebst-file-write"}, "Cannot write file '%s'",
                            name);
    rule_message(BSDL_LEVEL_PHASE, 1, {}, "EBST file '%s' done\n", name);
    return BSDL_RESULT_OK;
}
