#include "isc/isc.h"

#include "frame/messages.h"
#include "scan/scanner.h"

// The statements of the family other than ISC_Flow, as the grammar calls them. Nothing enters the
// model before the whole family has been read.

namespace
{

// Bits 6 to 9 of `standards` stay in force: those of IEEE 1532.
constexpr uint64_t FILTER_ALL_BUT_1532 = 0xFFFFFFFFFFFFFC3F;

// What is said of a statement; NULL where it cannot be left out, or not be left out after an error.
struct StatementTexts {
    const char *attribute;
    const char *passed;
    const char *absent;
    const char *skipped;
};

// By IscStatement.
constexpr StatementTexts STATEMENTS[] = {
    {"ISC_Conformance", "\tISC_Conformance statement passed", nullptr, nullptr},
    {"ISC_Pin_Behavior", "\tISC_Pin_Behavior statement passed", nullptr, nullptr},
    {"ISC_Fixed_System_Pins", "\tISC_Fixed_System_Pins statement passed",
     "\tNo ISC_Fixed_System_Pins statement", "Skipping isc_fixed_system_pins due to errors"},
    {"ISC_Status", "\tISC_Status statement passed", nullptr, "Skipping isc_status due to errors"},
    {"ISC_Blank_Usercode", "\tISC_Blank_Usercode statement passed", nullptr,
     "Skipping isc_blank_usercode due to errors"},
    {"ISC_Security", "\tISC_Security statement passed", "\tNo ISC_Security statement",
     "Skipping isc_security due to errors"},
    {"ISC_Flow", "\tISC_Flow statement passed", nullptr, "Skipping isc_flow due to errors"},
    {"ISC_Procedure", "\tISC_Procedure statement passed", nullptr,
     "Skipping isc_procedure due to errors"},
    {"ISC_Action", "\tISC_Action statement passed", nullptr, nullptr},
    {"ISC_Illegal_Exit", "\tISC_Illegal_Exit statement passed", "\tNo ISC_Illegal_Exit statement",
     "Skipping isc_illegal_exit due to errors"},
    // Under the name of the statement before it: a package that leaves ISC_Design_Warning out
    // passes the check of extensions, and must go on doing so.
    {"ISC_Illegal_Exit", "\tISC_Design warning statement passed", /* as is */
     "\tNo ISC_Design warning statement", "Skipping isc_design_warning due to errors"},
};

} // namespace

void isc_string_begins(Bsdl *bsdl, IscStatement statement, Place name)
{
    extension_defined(bsdl, STATEMENTS[statement].attribute, name);
    rescan_strings(bsdl);
}

void isc_passed(Bsdl *bsdl, IscStatement statement)
{
    statement_passed(bsdl, STATEMENTS[statement].passed);
}

void isc_absent(Bsdl *bsdl, IscStatement statement)
{
    statement_absent(bsdl, STATEMENTS[statement].absent);
}

void isc_skipped(Bsdl *bsdl, IscStatement statement)
{
    statement_skipped(bsdl, STATEMENTS[statement].skipped);
}

void isc_family_begins(Bsdl *bsdl) { scan_standards(bsdl, bsdl->standards, FILTER_ALL_BUT_1532); }

void isc_family_passed(Bsdl *bsdl, const IscData &values)
{
    // A second family replaces the first; in a PPC/PRG file each part keeps its own.
    bsdl->data->isc = model_new<IscData>(bsdl, values);
    scan_standards(bsdl, bsdl->standards, 0);
}

// ---------------------------------------------------------------------------- ISC_Conformance

int32_t isc_conformance_missing(Bsdl *bsdl)
{
    if (bsdl->standards & BSDL_STANDARD_BIT_1532_2002)
        rule_message(BSDL_LEVEL_WARNING, 2, {"isc-conformance-missing", bsdl->data->isc_use_place},
                     "ISC_Conformance statement required for Std_1532_2002");
    return ISC_CONFORMANCE_NONE;
}

int32_t isc_conformance_option(Bsdl *bsdl, int32_t conformance)
{
    parse_message(bsdl, BSDL_LEVEL_INFO, 3, nullptr, "\tISC_Conformance: '%s'",
                  conformance == ISC_CONFORMANCE_1532_2001 ? "STD_1532_2001" : "STD_1532_2002");
    return conformance;
}

// ------------------------------------- ISC_Pin_Behavior, ISC_Fixed_System_Pins and ISC_Status

// The messages about an order of the statements. Some do not fit what was written: for two orders
// with ISC_Fixed_System_Pins they say that there is none, and for one order the attributes in the
// text depend on `strict`. Hosts know the lines as they are.
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
                               int32_t status, Place first, Place fixed_pins_place)
{
    const PinOrderTexts &texts = PIN_ORDERS[order];
    // Whatever the order, the first statement stands too early.
    if (texts.error && bsdl->strict) {
        syntax_error(bsdl, {"isc-statement-order", first}, "%s", texts.error);
        return nullptr;
    }
    if (texts.warning)
        rule_message(BSDL_LEVEL_WARNING, 2, {"isc-statement-order", first}, "%s", texts.warning);
    if (texts.no_fixed_pins)
        isc_absent(bsdl, ISC_STATEMENT_FIXED_PINS);

    return model_new<IscPinBehaviorSet>(bsdl, {.pin_behavior = pin_behavior,
                                               .fixed_pins = fixed_pins.head,
                                               .status = status,
                                               .fixed_pins_place = fixed_pins_place});
}

// ----------------------------------------------------------- ISC_Blank_Usercode, ISC_Security

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

IscProcedure *isc_procedure_new(Bsdl *bsdl, const char *name, const char *data_name, List flows,
                                Place place)
{
    return model_new<IscProcedure>(
        bsdl,
        {.procedure_name = name, .data_name = data_name, .flows = flows.head, .place = place});
}

IscAction *isc_action_new(Bsdl *bsdl, const char *name, const char *data_name, int32_t exclusivity,
                          List specs, Place place)
{
    auto *entry = model_new<IscActionEntry>(bsdl, {.action = {.action_name = name,
                                                              .data_name = data_name,
                                                              .exclusivity = exclusivity,
                                                              .specs = specs.head},
                                                   .place = place});
    return &entry->action;
}

IscActionSpec *isc_action_spec_new(Bsdl *bsdl, const char *name, const char *data_name,
                                   int32_t attributes, Place place)
{
    auto *entry = model_new<IscActionSpecEntry>(
        bsdl, {.spec = {.procedure_name = name, .data_name = data_name, .attributes = attributes},
               .place = place});
    return &entry->spec;
}

// --------------------------------------------------------- ISC_Illegal_Exit, ISC_Design_Warning

const char *isc_design_warning_passed(Bsdl *bsdl, Place name)
{
    extension_defined(bsdl, STATEMENTS[ISC_STATEMENT_DESIGN_WARNING].attribute, name);
    const char *text = join_strings(bsdl);
    isc_passed(bsdl, ISC_STATEMENT_DESIGN_WARNING);
    return text;
}
