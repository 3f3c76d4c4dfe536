#include "boundary/boundary.h"
#include "frame/check.h"
#include "frame/texts.h"
#include "ports/ports.h"
#include "scan/scanner.h"

namespace
{

struct TapStatement {
    PortId *ScanPorts::*port;
    Place ScanPorts::*place;
    const char *passed;
    const char *label;
    int32_t function;
    int32_t type;
};

} // namespace

// By TapPort.
// clang-format off
static constexpr TapStatement STATEMENTS[] = {
    {.port = &ScanPorts::tdi, .place = &ScanPorts::tdi_place,
     .passed = "\tScan port tdi statement passed", .label = "TAP_SCAN_IN",
     .function = PIN_FUNCTION_TDI, .type = PIN_TYPE_IN},
    {.port = &ScanPorts::tdo, .place = &ScanPorts::tdo_place,
     .passed = "\tScan port tdo statement passed", .label = "TAP_SCAN_OUT",
     .function = PIN_FUNCTION_TDO, .type = PIN_TYPE_OUT},
    {.port = &ScanPorts::trst, .place = &ScanPorts::trst_place,
     .passed = "\tScan port reset statement passed", .label = "TAP_SCAN_RESET",
     .function = PIN_FUNCTION_TRST, .type = PIN_TYPE_IN},
    {.port = &ScanPorts::tms, .place = &ScanPorts::tms_place,
     .passed = "\tScan port mode statement passed", .label = "TAP_SCAN_MODE",
     .function = PIN_FUNCTION_TMS, .type = PIN_TYPE_IN},
    {.port = &ScanPorts::tck, .place = &ScanPorts::tck_place,
     .passed = "\tScan port clock statement passed", .label = "TAP_SCAN_CLOCK",
     .function = PIN_FUNCTION_TCK, .type = PIN_TYPE_IN},
};
// clang-format on

// ----------------------------------------------------------------------------------- while parsing

ClockRecord *clock_record_new(Bsdl *bsdl, double frequency, int32_t halt_state)
{
    return model_new(bsdl, ClockRecord{.frequency = frequency, .halt_state = halt_state});
}

void tap_port_passed(Bsdl *bsdl, TapPort which, PortId *port, Place place)
{
    const TapStatement &statement = STATEMENTS[which];
    if (ScanPorts *ports = bsdl->data->scan_port) {
        ports->*statement.port = port;
        ports->*statement.place = place;
    }
    statement_passed(bsdl, statement.passed);
}

void tap_clock_passed(Bsdl *bsdl, PortId *port, ClockRecord *clock, Place place)
{
    if (ScanPorts *ports = bsdl->data->scan_port)
        ports->clock = clock;
    bsdl->scan_mode = SCAN_MODE_NONE;
    tap_port_passed(bsdl, TAP_TCK, port, place);
}

// ------------------------------------------------------------------------------------------- check

static int32_t check_scan_port_role(Bsdl *bsdl, const TapStatement &statement, const PortId *port,
                                    Place place)
{
    const char *label = statement.label;
    int32_t result = BSDL_RESULT_OK;
    PinEntry *pin = find_pin_entry(bsdl, port);
    if (!pin || pin->pin_type == PIN_TYPE_LINKAGE) {
        // The one text without a subscript.
        result |= rule_error({"scan-port-missing", place},
                             "<scan port> %s <port id> '%s' not found in <logical port>", label,
                             port->name);
    } else {
        if (pin->pin_type != statement.type)
            result |= rule_error({"scan-port-pin-type", place},
                                 "<scan port> %s <port id> '%s' must be <pin type> '%s'", label,
                                 port_text(port), port_type_name(statement.type));
        if (pin->pin_function == PIN_FUNCTION_NONE)
            pin->pin_function = statement.function;
        else
            result |= rule_error({"scan-port-already-used", place},
                                 "<scan port> %s <port id> '%s' is already used as %s", label,
                                 port_text(port), pin_function_name(pin->pin_function));
    }
    if (port_in_groups(bsdl, port))
        result |= rule_error({"scan-port-in-group", place},
                             "<scan port> %s <port id> '%s' cannot appear in <grouped port>", label,
                             port_text(port));
    if (first_cell_of_bit(bsdl, port))
        result |=
            rule_error({"scan-port-with-cell", place},
                       "<scan port> %s <port id> '%s' cannot appear in <boundary-scan register>",
                       label, port_text(port));
    return result;
}

int32_t bsdl_check_scan_port(Bsdl *bsdl)
{
    const Call call(bsdl);
    if (call.code)
        return call.code;
    const ScanPorts *ports = bsdl->data->scan_port;
    if (!ports || !bsdl->data->boundary_register)
        return BSDL_RESULT_MISSING;
    int32_t result = BSDL_RESULT_OK;
    for (const TapStatement &statement : STATEMENTS)
        if (const PortId *port = ports->*statement.port)
            result |=
                check_scan_port_role(bsdl, statement, port,
                                     port_place(port, (ports->*statement.place).begin, NAME_TOKEN));
    return check_end(bsdl, result);
}

// ----------------------------------------------------------------------------------------- queries

static const ScanPorts *scan_ports_of(const Bsdl *bsdl)
{
    return bsdl && bsdl->data ? bsdl->data->scan_port : nullptr;
}

static PortId *tap_port_of(const Bsdl *bsdl, TapPort which)
{
    const ScanPorts *ports = scan_ports_of(bsdl);
    return ports ? ports->*STATEMENTS[which].port : nullptr;
}

static const ClockRecord *clock_of(const Bsdl *bsdl)
{
    const ScanPorts *ports = scan_ports_of(bsdl);
    return ports ? ports->clock : nullptr;
}

PortId *bsdlGetTckPortId(Bsdl *bsdl) { return tap_port_of(bsdl, TAP_TCK); }

PortId *bsdlGetTdiPortId(Bsdl *bsdl) { return tap_port_of(bsdl, TAP_TDI); }

PortId *bsdlGetTmsPortId(Bsdl *bsdl) { return tap_port_of(bsdl, TAP_TMS); }

PortId *bsdlGetTdoPortId(Bsdl *bsdl) { return tap_port_of(bsdl, TAP_TDO); }

PortId *bsdlGetTrstPortId(Bsdl *bsdl) { return tap_port_of(bsdl, TAP_TRST); }

double bsdlGetTckFrequency(Bsdl *bsdl)
{
    const ClockRecord *clock = clock_of(bsdl);
    return clock ? clock->frequency : 0.0;
}

int32_t bsdlGetTckHaltState(Bsdl *bsdl)
{
    const ClockRecord *clock = clock_of(bsdl);
    return clock ? clock->halt_state : -1;
}
