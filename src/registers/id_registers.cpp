// IDCODE_REGISTER and USERCODE_REGISTER.

#include "frame/check.h"
#include "frame/messages.h"
#include "registers/registers.h"
#include "scan/scanner.h"

#include <cstring>

namespace
{

constexpr size_t CODE_LENGTH = 32;

// The manufacturer's identity stands in bits 11 to 1, and the pattern begins with bit 31.
constexpr size_t MANUFACTURER_AT = 20;
constexpr size_t MANUFACTURER_LENGTH = 11;
constexpr char MANUFACTURER_RESERVED[] = "00001111111";

} // namespace

// ------------------------------------------------------------------------------------- the grammar

void rescan_last_when_fast(Bsdl *bsdl)
{
    if (bsdl->fast_read)
        bsdl->fast_read = 2;
    rescan_strings(bsdl);
}

bool idcode_passed(Bsdl *bsdl, List patterns, int32_t line)
{
    bsdl->scan_mode = SCAN_MODE_NONE;
    bsdl->data->id_registers->idcode_patterns = patterns.head;
    bsdl->data->id_registers->idcode_line = line;
    statement_passed(bsdl, "\tIdcode register statement passed");
    return bsdl->fast_read != 0;
}

void idcode_skipped(Bsdl *bsdl) { statement_skipped(bsdl, "Skipping idcode due to errors"); }

void usercode_passed(Bsdl *bsdl, List patterns, int32_t line)
{
    bsdl->scan_mode = SCAN_MODE_NONE;
    bsdl->data->id_registers->usercode_patterns = patterns.head;
    bsdl->data->id_registers->usercode_line = line;
    statement_passed(bsdl, "\tUsercode register statement passed");
}

void usercode_skipped(Bsdl *bsdl) { statement_skipped(bsdl, "Skipping usercode due to errors"); }

// --------------------------------------------------------------------------------------- the check

// Asked anew by each rule: an instruction that has its register already is reported each time.
static bool has_instruction(Bsdl *bsdl, const char *name)
{
    return associate_instruction(bsdl, model_name(bsdl, name), nullptr);
}

static int32_t check_idcode(Bsdl *bsdl, const char *pattern, int32_t line)
{
    int32_t result = 0;
    size_t length = std::strlen(pattern);
    if (length != CODE_LENGTH)
        result |= rule_error({"idcode-length", line}, "idcode register must be 32-bits");
    else if (pattern[CODE_LENGTH - 1] != '1')
        result |= rule_error({"idcode-last-bit", line},
                             "least significant bit of idcode: (%s) must be 1", pattern);
    if (length >= MANUFACTURER_AT + MANUFACTURER_LENGTH &&
        std::memcmp(pattern + MANUFACTURER_AT, MANUFACTURER_RESERVED, MANUFACTURER_LENGTH) == 0)
        result |= rule_error({"idcode-manufacturer", line},
                             "manufacturer part of idcode cannot be (00001111111)");
    if (!has_instruction(bsdl, "IDCODE"))
        result |= rule_error({"idcode-without-instruction", line},
                             "no idcode instruction found in opcode list");
    return result;
}

// A pattern that was lost makes the result 1, whatever was found before it.
static int32_t check_idcodes(Bsdl *bsdl, const OptionalRegisters *codes, int32_t result)
{
    for (const char *pattern : items<char>(codes->idcode_patterns)) {
        if (!pattern)
            result = BSDL_RESULT_ABSENT;
        else if (check_idcode(bsdl, pattern, codes->idcode_line))
            result = BSDL_RESULT_FAILED;
    }
    return result;
}

static int32_t check_usercodes(Bsdl *bsdl, const OptionalRegisters *codes, int32_t result)
{
    if (!has_instruction(bsdl, "IDCODE"))
        result = rule_error({"usercode-without-idcode-instruction", codes->usercode_line},
                            "no idcode instruction found in opcode list");
    else if (!has_instruction(bsdl, "USERCODE"))
        result = rule_error({"usercode-without-instruction", codes->usercode_line},
                            "no usercode instruction found in opcode list");
    for (const char *pattern : items<char>(codes->usercode_patterns)) {
        if (!pattern)
            result = BSDL_RESULT_ABSENT;
        else if (std::strlen(pattern) != CODE_LENGTH)
            result = rule_error({"usercode-length", codes->usercode_line},
                                "usercode register must be 32-bits");
    }
    return result;
}

int32_t bsdl_check_optional_reg(Bsdl *h)
{
    const Call call(h);
    if (call.refused())
        return call.code;
    // Both registers are optional, so there is nothing wrong with no description.
    if (call.code)
        return BSDL_RESULT_OK;
    const OptionalRegisters *codes = h->data->id_registers;
    if (!codes)
        return BSDL_RESULT_ABSENT;

    int32_t result = 0;
    if (bsdlIs1532(h) && (!codes->idcode_patterns || !codes->usercode_patterns))
        result = rule_error({"isc-identification-missing"},
                            "idcode & usercode register are mandatory for ISC1532");
    if (codes->idcode_patterns) {
        result = check_idcodes(h, codes, result);
        if (codes->usercode_patterns)
            result = check_usercodes(h, codes, result);
    } else if (has_instruction(h, "IDCODE")) {
        result = rule_error({"idcode-statement-missing"},
                            "no idcode statement found while IDCODE instruction is defined");
    }
    if (!codes->usercode_patterns && has_instruction(h, "USERCODE"))
        result = rule_error({"usercode-statement-missing"},
                            "no usercode statement found while USERCODE instruction is defined");
    return check_end(h, result);
}

// ----------------------------------------------------------------------------------------- queries

static OptionalRegisters *codes_of(const Bsdl *bsdl)
{
    return bsdl && bsdl->data ? bsdl->data->id_registers : nullptr;
}

static Iteration idcodes_of(const Bsdl *bsdl)
{
    OptionalRegisters *codes = codes_of(bsdl);
    return codes ? Iteration{&codes->idcode_walk, codes->idcode_patterns, &codes->idcode_cursor}
                 : Iteration{};
}

static Iteration usercodes_of(const Bsdl *bsdl)
{
    OptionalRegisters *codes = codes_of(bsdl);
    return codes
               ? Iteration{&codes->usercode_walk, codes->usercode_patterns, &codes->usercode_cursor}
               : Iteration{};
}

int32_t bsdlGetNbrOfIdcodePatterns(Bsdl *h) { return iteration_count(idcodes_of(h)); }

const char *bsdlGetFirstIdcodePattern(Bsdl *h)
{
    return iteration_first<const char>(idcodes_of(h));
}

const char *bsdlGetNextIdcodePattern(Bsdl *h) { return iteration_next<const char>(idcodes_of(h)); }

int32_t bsdlGetNbrOfUsercodePatterns(Bsdl *h) { return iteration_count(usercodes_of(h)); }

const char *bsdlGetFirstUsercodePattern(Bsdl *h)
{
    return iteration_first<const char>(usercodes_of(h));
}

const char *bsdlGetNextUsercodePattern(Bsdl *h)
{
    return iteration_next<const char>(usercodes_of(h));
}
