#include "boundary/boundary.h"

#include "frame/check.h"
#include "frame/messages.h"
#include "frame/texts.h"
#include "ports/ports.h"
#include "registers/registers.h"

#include <cfloat>
#include <cmath>
#include <cstring>

// -------------------------------------------------------------------------------------- statements

void runbist_absent(Bsdl *bsdl)
{
    bsdl->data->runbist = nullptr;
    statement_absent(bsdl, "\tNo runbist description statement");
}

void runbist_passed(Bsdl *bsdl, RunbistSpec *spec, Place place)
{
    spec->place = place;
    bsdl->data->runbist = spec;
    statement_passed(bsdl, "\tRunbist description statement passed");
}

void runbist_skipped(Bsdl *bsdl)
{
    bsdl->data->runbist = nullptr;
    statement_skipped(bsdl, "Skipping runbist_description due to errors");
}

RunbistSpec *runbist_spec_new(Bsdl *bsdl, WaitSpec *wait, int32_t condition, const char *signature,
                              Place signature_place)
{
    auto *spec = model_new<RunbistSpec>(bsdl);
    *spec = {.wait = wait,
             .condition = condition,
             .signature = signature,
             .signature_place = signature_place,
             .place = {}};
    return spec;
}

void intest_absent(Bsdl *bsdl)
{
    bsdl->data->intest = nullptr;
    statement_absent(bsdl, "\tNo intest description statement");
}

void intest_passed(Bsdl *bsdl, IntestSpec *spec, Place place)
{
    spec->place = place;
    bsdl->data->intest = spec;
    statement_passed(bsdl, "\tIntest description statement passed");
}

void intest_skipped(Bsdl *bsdl)
{
    bsdl->data->intest = nullptr;
    statement_skipped(bsdl, "Skipping intest_description due to errors");
}

IntestSpec *intest_spec_new(Bsdl *bsdl, WaitSpec *wait, int32_t condition)
{
    auto *spec = model_new<IntestSpec>(bsdl);
    *spec = {.wait = wait, .condition = condition, .place = {}};
    return spec;
}

WaitSpec *wait_spec_new(Bsdl *bsdl, double time, List clock_cycles)
{
    auto *wait = model_new<WaitSpec>(bsdl);
    *wait = {.wait_time = seconds_from(time), .clock_cycles = clock_cycles.head};
    return wait;
}

ClockCycles *clock_cycles_new(Bsdl *bsdl, PortId *port, int32_t count, Place place)
{
    auto *cycles = model_new<ClockCycles>(bsdl);
    *cycles = {.port = port, .cycle_count = count, .place = place};
    return cycles;
}

int32_t cycle_count_from(Bsdl *bsdl, int32_t count)
{
    if (count < 1)
        parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "duration-cycle-count",
                      "Value of cycle_count in duration spec should be greater than 0 (now %i)",
                      count);
    return count;
}

double duration_from(Bsdl *bsdl, double time)
{
    if (!(time > 0.0))
        parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "duration-time",
                      "Value of time in duration spec should be greater than 0 (now %s)",
                      fixed_text(time).text);
    return time;
}

// Narrowing a value that no float can hold is undefined.
float seconds_from(double time)
{
    if (std::fabs(time) > FLT_MAX)
        return time > 0 ? INFINITY : -INFINITY;
    return static_cast<float>(time);
}

// ------------------------------------------------------------------------------------------ checks

static bool has_opcode_table(const BsdlData *data)
{
    return data->instruction_register && data->instruction_register->opcode_table;
}

static void index_clock_cells(Bsdl *bsdl, Index *clocks, Arena *scratch)
{
    const Lookups *lookups = cell_lookups(bsdl);
    uint32_t count = lookups ? lookups->cell_count : 0;
    index_start(clocks, scratch, count);
    for (uint32_t i = 0; i < count; i++) {
        const CellSpec *spec = lookups->cell_table[i]->cell_spec;
        if (spec->function == CELL_FUNCTION_CLOCK && spec->port)
            index_first(clocks, port_key(spec->port), i);
    }
}

// A duration counts the cycles of TCK or of a port with a CLOCK cell, and names each port once: a
// port that comes again is reported at every place but the last.
static int32_t check_clocks_with(Bsdl *bsdl, Arena *scratch, const GSList *clock_cycles)
{
    uint32_t count;
    auto **clocks = list_table_of<ClockCycles>(scratch, clock_cycles, &count);
    Index last;
    index_start(&last, scratch, count);
    for (uint32_t i = 0; i < count; i++)
        if (clocks[i]->port)
            index_last(&last, port_key(clocks[i]->port), i);

    const ScanPorts *tap = bsdl->data->scan_port;
    const PortId *tck = tap && tap->tck && tap->tck->name ? tap->tck : nullptr;
    Index clock_cells;
    index_clock_cells(bsdl, &clock_cells, scratch);

    int32_t result = BSDL_RESULT_OK;
    for (uint32_t i = 0; i < count; i++) {
        const PortId *port = clocks[i]->port;
        if (!port)
            continue;
        const Place place = clocks[i]->place;
        uint64_t key = port_key(port);
        bool is_tck = tck && key == port_key(tck);
        if (!is_tck && index_find(&clock_cells, key) == INDEX_NONE)
            result |= rule_error({"duration-port-no-clock", place}, "Port '%s' is not a clock port",
                                 port_text(port));
        if (index_find(&last, key) != i)
            result |= rule_error({"duration-port-repeated", place}, "Port '%s' is not unique",
                                 port_text(port));
    }
    return scratch->failed ? BSDL_RESULT_FAILED : result;
}

static int32_t check_clocks(Bsdl *bsdl, const WaitSpec *wait)
{
    if (!wait->clock_cycles)
        return BSDL_RESULT_OK;
    Scratch scratch;
    if (scratch.failed)
        return BSDL_RESULT_FAILED;
    return check_clocks_with(bsdl, &scratch, wait->clock_cycles);
}

// The register that the instruction selects gives the length of the signature.
static int32_t check_signature(const Bsdl *bsdl, const RunbistSpec *spec, const char *runbist)
{
    auto length = static_cast<int32_t>(std::strlen(spec->signature));
    for (const RegisterEntry *entry : items<RegisterEntry>(bsdl->data->register_access)) {
        if (entry->length == length)
            continue;
        for (const InstructionCapture *capture : items<InstructionCapture>(entry->captures))
            if (same_name(capture->name, runbist))
                return rule_error(
                    {"runbist-signature-length", token_place(spec->signature_place.begin, 1)},
                    "Incorrect expect data pattern length %i, should be %i", length, entry->length);
    }
    return BSDL_RESULT_OK;
}

int32_t bsdl_check_runbist(Bsdl *h)
{
    const Call call(h);
    if (call.code)
        return call.code;
    const RunbistSpec *spec = h->data->runbist;
    if (!spec)
        return BSDL_RESULT_ABSENT;
    if (!spec->wait || !has_opcode_table(h->data) || !h->data->register_access)
        return BSDL_RESULT_MISSING;

    int32_t result = BSDL_RESULT_OK;
    const char *runbist = model_name(h, "RUNBIST");
    if (!find_instruction(h, runbist))
        result |= rule_error({"runbist-no-instruction", spec->place},
                             "Runbist used, but RUNBIST instruction does not exist");
    result |= check_clocks(h, spec->wait);
    result |= check_signature(h, spec, runbist);
    return check_end(h, result);
}

int32_t bsdl_check_intest(Bsdl *h)
{
    const Call call(h);
    if (call.code)
        return call.code;
    const IntestSpec *spec = h->data->intest;
    if (!spec)
        return BSDL_RESULT_ABSENT;
    if (!spec->wait || !has_opcode_table(h->data))
        return BSDL_RESULT_MISSING;

    int32_t result = BSDL_RESULT_OK;
    if (!find_instruction(h, model_name(h, "INTEST")))
        result |= rule_error({"intest-no-instruction", spec->place},
                             "Intest used, but INTEST instruction does not exist");
    result |= check_clocks(h, spec->wait);
    return check_end(h, result);
}
