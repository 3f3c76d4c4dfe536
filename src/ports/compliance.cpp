#include "boundary/boundary.h"
#include "frame/check.h"
#include "frame/texts.h"
#include "ports/ports.h"
#include "scan/scanner.h"

#include <cstring>

// ----------------------------------------------------------------------------------- while parsing

ComplianceRecord *compliance_new(Bsdl *bsdl, List ports, List patterns)
{
    bsdl->scan_mode = SCAN_MODE_NONE;
    return model_new(bsdl, ComplianceRecord{.patterns = patterns.head, .ports = ports.head});
}

void compliance_absent(Bsdl *bsdl) { statement_absent(bsdl, "\tNo compliance enable statement"); }

void compliance_passed(Bsdl *bsdl, ComplianceRecord *record, Place place)
{
    record->place = place;
    bsdl->data->compliance = record;
    statement_passed(bsdl, "\tCompliance enable statement passed");
}

void compliance_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping compliance_enable due to errors");
}

// ------------------------------------------------------------------------------------------- check

static int32_t check_compliance_port(Bsdl *bsdl, const PortId *port, Place place)
{
    PinEntry *pin = find_pin_entry(bsdl, port);
    if (!pin)
        return rule_error({"compliance-port-missing", place},
                          "<compliance port> %s does not exist in <logical portmap>",
                          port_text(port));
    int32_t result = BSDL_RESULT_OK;
    if (pin->pin_type != PIN_TYPE_IN) // as a warning less urgent than those of other rules
        result |=
            rule_message(bsdl->strict ? BSDL_LEVEL_ERROR : BSDL_LEVEL_WARNING, bsdl->strict ? 2 : 3,
                         {"compliance-port-pin-type", place},
                         "<compliance port> %s <pin type> in <logical portmap> has to be type IN",
                         port_text(port));
    if (pin->pin_function == PIN_FUNCTION_NONE)
        pin->pin_function = PIN_FUNCTION_COMPLIANCE;
    else
        result |= rule_error({"compliance-port-already-used", place},
                             "<compliance port> <port id> '%s' is already used as %s",
                             port_text(port), pin_function_name(pin->pin_function));
    if (first_cell_of_bit(bsdl, port))
        result |=
            rule_error({"compliance-port-with-cell", place},
                       "<compliance port> <port id> '%s' cannot appear in <boundary-scan register>",
                       port_text(port));
    return result;
}

int32_t bsdl_check_compliance(Bsdl *bsdl)
{
    const Call call(bsdl);
    if (call.code)
        return call.code;
    const ComplianceRecord *record = bsdl->data->compliance;
    if (!record)
        return BSDL_RESULT_ABSENT;
    if (!bsdl->data->pins)
        return BSDL_RESULT_MISSING;
    if (!record->ports || !record->patterns)
        return BSDL_RESULT_ABSENT;

    int32_t result = BSDL_RESULT_OK;
    TokenCursor token = {record->place.begin, VALUE_TOKEN + 1}; // after a bracket
    for (const PortId *port : items<PortId>(record->ports)) {
        result |=
            check_compliance_port(bsdl, port, port_place(port, cursor_place(&token).begin, 0));
        token.behind += port_tokens(port) + 1;
    }
    token.behind++; // the brackets between ports and patterns

    // The values are not checked: the device decides which ones its ports need.
    const int32_t port_count = bsdlGetNbrOfComplPorts(bsdl);
    for (const char *pattern : items<char>(record->patterns)) {
        auto length = static_cast<int32_t>(std::strlen(pattern));
        if (length != port_count)
            result |=
                rule_error({"compliance-pattern-length", cursor_place(&token)},
                           "<compliance port> <pattern> '%s' has incorrect length %i, should be %i",
                           pattern, length, port_count);
        token.behind += 2;
    }
    return check_end(bsdl, result);
}

// ----------------------------------------------------------------------------------------- queries

static ComplianceRecord *compliance_of(const Bsdl *bsdl)
{
    return bsdl && bsdl->data ? bsdl->data->compliance : nullptr;
}

static Iteration ports_of(const Bsdl *bsdl)
{
    ComplianceRecord *record = compliance_of(bsdl);
    return record ? Iteration{&record->port_walk, record->ports, &record->port_cursor}
                  : Iteration{};
}

static Iteration patterns_of(const Bsdl *bsdl)
{
    ComplianceRecord *record = compliance_of(bsdl);
    return record ? Iteration{&record->pattern_walk, record->patterns, &record->pattern_cursor}
                  : Iteration{};
}

int32_t bsdlGetNbrOfComplPorts(Bsdl *bsdl)
{
    Iteration ports = ports_of(bsdl);
    return ports.head ? iteration_count(ports) : -1;
}

PortId *bsdlGetFirstComplPort(Bsdl *bsdl) { return iteration_first<PortId>(ports_of(bsdl)); }

PortId *bsdlGetNextComplPort(Bsdl *bsdl) { return iteration_next<PortId>(ports_of(bsdl)); }

int32_t bsdlGetNbrOfComplPatterns(Bsdl *bsdl)
{
    Iteration patterns = patterns_of(bsdl);
    return patterns.head ? iteration_count(patterns) : -1;
}

const char *bsdlGetFirstComplPattern(Bsdl *bsdl)
{
    return iteration_first<const char>(patterns_of(bsdl));
}

const char *bsdlGetNextComplPattern(Bsdl *bsdl)
{
    return iteration_next<const char>(patterns_of(bsdl));
}
