// IDCODE_REGISTER and USERCODE_REGISTER.

#include "frame/check.h"
#include "frame/messages.h"
#include "isc/isc.h"
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

bool idcode_passed(Bsdl *bsdl, List patterns, Place place)
{
    bsdl->scan_mode = SCAN_MODE_NONE;
    bsdl->data->id_registers->idcode_patterns = patterns.head;
    bsdl->data->id_registers->idcode_place = place;
    statement_passed(bsdl, "\tIdcode register statement passed");
    return bsdl->fast_read != 0;
}

void idcode_skipped(Bsdl *bsdl) { statement_skipped(bsdl, "Skipping idcode due to errors"); }

void usercode_passed(Bsdl *bsdl, List patterns, Place place)
{
    bsdl->scan_mode = SCAN_MODE_NONE;
    bsdl->data->id_registers->usercode_patterns = patterns.head;
    bsdl->data->id_registers->usercode_place = place;
    statement_passed(bsdl, "\tUsercode register statement passed");
}

void usercode_skipped(Bsdl *bsdl) { statement_skipped(bsdl, "Skipping usercode due to errors"); }

// --------------------------------------------------------------------------------------- the check

// Asked anew by each rule: an instruction that has its register already is reported each time.
static bool has_instruction(Bsdl *bsdl, const char *name)
{
    return associate_instruction(bsdl, model_name(bsdl, name), nullptr);
}

static int32_t check_idcode(Bsdl *bsdl, const char *pattern, Place place, Place statement)
{
    int32_t result = 0;
    size_t length = std::strlen(pattern);
    if (length != CODE_LENGTH)
        result |= rule_error({"idcode-length", place}, "idcode register must be 32-bits");
    else if (pattern[CODE_LENGTH - 1] != '1')
        result |= rule_error({"idcode-last-bit", place},
                             "least significant bit of idcode: (%s) must be 1", pattern);
    if (length >= MANUFACTURER_AT + MANUFACTURER_LENGTH &&
        std::memcmp(pattern + MANUFACTURER_AT, MANUFACTURER_RESERVED, MANUFACTURER_LENGTH) == 0)
        result |= rule_error({"idcode-manufacturer", place},
                             "manufacturer part of idcode cannot be (00001111111)");
    if (!has_instruction(bsdl, "IDCODE"))
        result |= rule_error({"idcode-without-instruction", statement},
                             "no idcode instruction found in opcode list");
    return result;
}

// A pattern that was lost makes the result 1, whatever was found before it.
static int32_t check_idcodes(Bsdl *bsdl, const OptionalRegisters *codes, int32_t result)
{
    TokenCursor token = {codes->idcode_place.begin, VALUE_TOKEN};
    for (const char *pattern : items<char>(codes->idcode_patterns)) {
        if (!pattern)
            result = BSDL_RESULT_ABSENT;
        else if (check_idcode(bsdl, pattern, cursor_place(&token), codes->idcode_place))
            result = BSDL_RESULT_FAILED;
        token.behind += 2;
    }
    return result;
}

static int32_t check_usercodes(Bsdl *bsdl, const OptionalRegisters *codes, int32_t result)
{
    if (!has_instruction(bsdl, "IDCODE"))
        result = rule_error({"usercode-without-idcode-instruction", codes->usercode_place},
                            "no idcode instruction found in opcode list");
    else if (!has_instruction(bsdl, "USERCODE"))
        result = rule_error({"usercode-without-instruction", codes->usercode_place},
                            "no usercode instruction found in opcode list");
    TokenCursor token = {codes->usercode_place.begin, VALUE_TOKEN};
    for (const char *pattern : items<char>(codes->usercode_patterns)) {
        const Place place = cursor_place(&token);
        token.behind += 2;
        if (!pattern)
            result = BSDL_RESULT_ABSENT;
        else if (std::strlen(pattern) != CODE_LENGTH)
            result = rule_error({"usercode-length", place}, "usercode register must be 32-bits");
    }
    return result;
}

// Of the instruction that demands a register.
static Place instruction_place(Bsdl *bsdl, const char *name)
{
    const InstructionEntry *entry = find_instruction(bsdl, model_name(bsdl, name));
    return entry ? token_place(entry->place.begin) : Place{};
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
        result = rule_error({"isc-identification-missing", h->data->isc_use_place},
                            "idcode & usercode register are mandatory for ISC1532");
    if (codes->idcode_patterns) {
        result = check_idcodes(h, codes, result);
        if (codes->usercode_patterns)
            result = check_usercodes(h, codes, result);
    } else if (has_instruction(h, "IDCODE")) {
        result = rule_error({"idcode-statement-missing", instruction_place(h, "IDCODE")},
                            "no idcode statement found while IDCODE instruction is defined");
    }
    if (!codes->usercode_patterns && has_instruction(h, "USERCODE"))
        result = rule_error({"usercode-statement-missing", instruction_place(h, "USERCODE")},
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
