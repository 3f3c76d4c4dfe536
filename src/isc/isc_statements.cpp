#include "isc/isc.h"

#include "frame/messages.h"
#include "scan/scanner.h"

// The statements of the family other than ISC_Flow, as the grammar calls them. Nothing enters the
// model before the whole family has been read.

namespace
{

// Bits 6 to 9 of `standards` stay in force: those of IEEE 1532.
constexpr uint64_t FILTER_ALL_BUT_1532 = 0xFFFFFFFFFFFFFC3F;

} // namespace

void isc_string_begins(Bsdl *bsdl, const char *attribute)
{
    extension_defined(bsdl, attribute);
    rescan_strings(bsdl);
}

void isc_family_begins(Bsdl *bsdl) { bsdl->standards_filter = FILTER_ALL_BUT_1532; }

void isc_family_passed(Bsdl *bsdl, const IscData &values)
{
    // A second family replaces the first; in a PPC/PRG file each part keeps its own.
    bsdl->data->isc = model_new<IscData>(bsdl, values);
    bsdl->standards_filter = 0;
}

// ---------------------------------------------------------------------------- ISC_Conformance

int32_t isc_conformance_missing(Bsdl *bsdl)
{
    if (bsdl->standards & BSDL_STANDARD_BIT_1532_2002)
        parse_message(bsdl, BSDL_LEVEL_WARNING, 2, "isc-conformance-missing",
                      "ISC_Conformance statement required for Std_1532_2002");
    return ISC_CONFORMANCE_NONE;
}

int32_t isc_conformance_option(Bsdl *bsdl, int32_t conformance)
{
    parse_message(bsdl, BSDL_LEVEL_INFO, 3, nullptr, "\tISC_Conformance: '%s'",
                  conformance == ISC_CONFORMANCE_1532_2001 ? "STD_1532_2001" : "STD_1532_2002");
    return conformance;
}

int32_t isc_conformance_passed(Bsdl *bsdl, int32_t conformance)
{
    statement_passed(bsdl, "\tISC_Conformance statement passed");
    return conformance;
}

// ------------------------------------- ISC_Pin_Behavior, ISC_Fixed_System_Pins and ISC_Status

int32_t isc_pin_behavior_passed(Bsdl *bsdl, int32_t pin_behavior)
{
    statement_passed(bsdl, "\tISC_Pin_Behavior statement passed");
    return pin_behavior;
}

List isc_fixed_pins_passed(Bsdl *bsdl, List pins)
{
    statement_passed(bsdl, "\tISC_Fixed_System_Pins statement passed");
    return pins;
}

List isc_fixed_pins_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping isc_fixed_system_pins due to errors");
    return {};
}

int32_t isc_status_passed(Bsdl *bsdl, int32_t status)
{
    statement_passed(bsdl, "\tISC_Status statement passed");
    return status;
}

int32_t isc_status_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping isc_status due to errors");
    return ISC_STATUS_NONE;
}

// What is said about an order. The forms do not always fit what was written: two orders with
// ISC_Fixed_System_Pins are told that there is none, and which attributes the text names depends on
// `strict` in one of them. Callers know the lines as they are.
struct PinOrderTexts {
    const char *warning; // NULL for an order that may stand
    const char *error;   // in its place under `strict`
    bool no_fixed_pins;
};

static constexpr char ORDER_OF_TWO[] =
    "Wrong ordening of ISC ATTRIBUTES \"PIN_BEHAVIOR\" and \"STATUS\""; /* as is */
static constexpr char ORDER_OF_THREE[] = "Wrong ordening of ISC ATTRIBUTES \"PIN_BEHAVIOR\" and "
                                         "\"FIXED_SYSTEM_PINS\" and \"STATUS\""; /* as is */

// By IscPinOrder.
static constexpr PinOrderTexts PIN_ORDERS[] = {
    {.warning = nullptr, .error = nullptr, .no_fixed_pins = false},
    {.warning = nullptr, .error = nullptr, .no_fixed_pins = true},
    {.warning = ORDER_OF_TWO, .error = ORDER_OF_TWO, .no_fixed_pins = true},
    {.warning = ORDER_OF_TWO, .error = ORDER_OF_TWO, .no_fixed_pins = true},
    {.warning = ORDER_OF_TWO, .error = ORDER_OF_THREE, .no_fixed_pins = true},
    {.warning = ORDER_OF_THREE, .error = ORDER_OF_THREE, .no_fixed_pins = false},
    {.warning = ORDER_OF_THREE, .error = ORDER_OF_THREE, .no_fixed_pins = false},
};

IscPinBehaviorSet *isc_pin_set(Bsdl *bsdl, IscPinOrder order, int32_t pin_behavior, List fixed_pins,
                               int32_t status, int32_t fixed_pins_line)
{
    const PinOrderTexts &texts = PIN_ORDERS[order];
    if (texts.error && bsdl->strict) {
        parse_refused(bsdl, "isc-statement-order", "%s", texts.error);
        return nullptr;
    }
    if (texts.warning)
        parse_message(bsdl, BSDL_LEVEL_WARNING, 2, "isc-statement-order", "%s", texts.warning);
    if (texts.no_fixed_pins)
        statement_absent(bsdl, "\tNo ISC_Fixed_System_Pins statement");

    return model_new<IscPinBehaviorSet>(bsdl, {.pin_behavior = pin_behavior,
                                               .fixed_pins = fixed_pins.head,
                                               .status = status,
                                               .fixed_pins_line = fixed_pins_line});
}

// ----------------------------------------------------------- ISC_Blank_Usercode, ISC_Security

const char *isc_blank_usercode_passed(Bsdl *bsdl, const char *pattern)
{
    statement_passed(bsdl, "\tISC_Blank_Usercode statement passed");
    return pattern;
}

const char *isc_blank_usercode_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping isc_blank_usercode due to errors");
    return nullptr;
}

IscSecurity *isc_security_absent(Bsdl *bsdl)
{
    statement_absent(bsdl, "\tNo ISC_Security statement");
    return nullptr;
}

IscSecurity *isc_security_passed(Bsdl *bsdl, IscSecurity *security)
{
    statement_passed(bsdl, "\tISC_Security statement passed");
    return security;
}

IscSecurity *isc_security_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping isc_security due to errors");
    return nullptr;
}

IscSecurity *isc_security_key(Bsdl *bsdl, int32_t msb, int32_t lsb)
{
    return model_new<IscSecurity>(bsdl, {.disable_key_lsb = lsb, .disable_key_msb = msb});
}

IscSecurity *isc_security_new(Bsdl *bsdl, int32_t read, int32_t program, int32_t erase,
                              IscSecurity *key)
{
    bsdl->scan_mode = SCAN_MODE_NONE;
    key->disable_read = read;
    key->disable_program = program;
    key->disable_erase = erase;
    return key;
}

// -------------------------------------------------------------------- ISC_Procedure, ISC_Action

List isc_procedures_passed(Bsdl *bsdl, List procedures)
{
    statement_passed(bsdl, "\tISC_Procedure statement passed");
    return procedures;
}

List isc_procedures_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping isc_procedure due to errors");
    return {};
}

IscProcedure *isc_procedure_new(Bsdl *bsdl, const char *name, const char *data_name, List flows,
                                int32_t line)
{
    return model_new<IscProcedure>(
        bsdl, {.procedure_name = name, .data_name = data_name, .flows = flows.head, .line = line});
}

List isc_actions_passed(Bsdl *bsdl, List actions)
{
    statement_passed(bsdl, "\tISC_Action statement passed");
    return actions;
}

IscAction *isc_action_new(Bsdl *bsdl, const char *name, const char *data_name, int32_t exclusivity,
                          List specs, int32_t line)
{
    auto *entry = model_new<IscActionEntry>(bsdl, {.action = {.action_name = name,
                                                              .data_name = data_name,
                                                              .exclusivity = exclusivity,
                                                              .specs = specs.head},
                                                   .line = line});
    return &entry->action;
}

IscActionSpec *isc_action_spec_new(Bsdl *bsdl, const char *name, const char *data_name,
                                   int32_t attributes, int32_t line)
{
    auto *entry = model_new<IscActionSpecEntry>(
        bsdl, {.spec = {.procedure_name = name, .data_name = data_name, .attributes = attributes},
               .line = line});
    return &entry->spec;
}

// --------------------------------------------------------- ISC_Illegal_Exit, ISC_Design_Warning

List isc_illegal_exits_absent(Bsdl *bsdl)
{
    statement_absent(bsdl, "\tNo ISC_Illegal_Exit statement");
    return {};
}

List isc_illegal_exits_passed(Bsdl *bsdl, List names)
{
    statement_passed(bsdl, "\tISC_Illegal_Exit statement passed");
    return names;
}

List isc_illegal_exits_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping isc_illegal_exit due to errors");
    return {};
}

const char *isc_design_warning_absent(Bsdl *bsdl)
{
    statement_absent(bsdl, "\tNo ISC_Design warning statement");
    return nullptr;
}

const char *isc_design_warning_passed(Bsdl *bsdl)
{
    // Under the name of the statement before it: a package that leaves ISC_Design_Warning out
    // passes the check of extensions, and must go on doing so.
    extension_defined(bsdl, "ISC_Illegal_Exit");
    const char *text = join_strings(bsdl);
    statement_passed(bsdl, "\tISC_Design warning statement passed");
    return text;
}

const char *isc_design_warning_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping isc_design_warning due to errors");
    return nullptr;
}
