// ISC_Procedure and ISC_Action: each names what the statement before it has defined.

#include "frame/check.h"
#include "isc/isc.h"

static void build_tables(Bsdl *bsdl, const IscData *isc, IscTables *tables)
{
    Arena *arena = &bsdl->arena;
    tables->flows = list_table_of<IscFlow>(arena, isc->flows, &tables->flow_count);
    index_start(&tables->flows_by_name, arena, tables->flow_count);
    for (uint32_t i = 0; i < tables->flow_count; i++) {
        const IscFlowDescriptor *descriptor = tables->flows[i]->descriptor;
        index_first(&tables->flows_by_name,
                    isc_name_key(descriptor->flow_name, descriptor->data_name), i);
    }
    tables->procedures =
        list_table_of<IscProcedure>(arena, isc->procedures, &tables->procedure_count);
    index_start(&tables->procedures_by_name, arena, tables->procedure_count);
    for (uint32_t i = 0; i < tables->procedure_count; i++) {
        const IscProcedure *procedure = tables->procedures[i];
        index_first(&tables->procedures_by_name,
                    isc_name_key(procedure->procedure_name, procedure->data_name), i);
    }
}

IscTables *isc_tables(Bsdl *bsdl, IscData *isc)
{
    if (!isc->tables) {
        isc->tables = model_new<IscTables>(bsdl);
        build_tables(bsdl, isc, isc->tables);
    }
    return isc->tables;
}

// ---------------------------------------------------------------------------------- ISC_Procedure

// "PROC_" begins the standard's own names alone.
static bool is_reserved_name(const char *name)
{
    static constexpr const char *NAMES[] = {
        "PROC_READ",   "PROC_VERIFY",  "PROC_PROGRAM", "PROC_ERASE",      "PROC_BLANK_CHECK",
        "PROC_ENABLE", "PROC_DISABLE", "PROC_PRELOAD", "PROC_ERROR_EXIT", "PROC_PROGRAM_DONE"};
    for (const char *one : NAMES)
        if (same_text(name, one))
            return true;
    return false;
}

static int32_t check_flow_names(const IscProcedure *procedure, const IscTables *tables)
{
    int32_t result = 0;
    for (const IscFlowDescriptor *flow : items<IscFlowDescriptor>(procedure->flows)) {
        if (!flow->flow_name ||
            index_find(&tables->flows_by_name, isc_name_key(flow->flow_name, flow->data_name)) !=
                INDEX_NONE)
            continue;
        Rule rule = {"isc-procedure-flow-unknown", flow->place};
        result |= flow->data_name
                      ? rule_error(rule, "flow %s(%s) does not exist in flow_description_list",
                                   flow->flow_name, flow->data_name)
                      : rule_error(rule, "flow %s does not exist in flow_description_list",
                                   flow->flow_name);
    }
    return result;
}

int32_t bsdl_check_isc_procedures(Bsdl *h)
{
    const Call call(h);
    if (int32_t code = isc_check_begin(call))
        return code;
    IscData *isc = h->data->isc;
    if (!isc->procedures)
        return BSDL_RESULT_MISSING;

    const IscTables *tables = isc_tables(h, isc);
    bool has_error_exit = false;
    bool has_program_done = false;
    int32_t result = 0;
    for (const IscProcedure *procedure : items<IscProcedure>(isc->procedures)) {
        const char *name = procedure->procedure_name;
        has_error_exit |= same_text(name, "PROC_ERROR_EXIT");
        has_program_done |= same_text(name, "PROC_PROGRAM_DONE");
        if (text_starts_with(name, "PROC_") && !is_reserved_name(name))
            result |= rule_strict(
                h, {"isc-procedure-name", procedure->place},
                "illegal proc_name: '%s', the first five characters cannot be \"PROC_\"", name);
        result |= check_flow_names(procedure, tables);
    }
    if (!has_error_exit)
        result |= rule_error({"isc-procedure-error-exit-missing", isc->procedures_place},
                             "mandatory procedure PROC_ERROR_EXIT not found");
    if (!has_program_done)
        result |= rule_error({"isc-procedure-program-done-missing", isc->procedures_place},
                             "mandatory procedure PROC_PROGRAM_DONE not found");
    return check_end(h, result);
}

// ------------------------------------------------------------------------------------- ISC_Action

int32_t bsdl_check_isc_actions(Bsdl *h)
{
    const Call call(h);
    if (int32_t code = isc_check_begin(call))
        return code;
    IscData *isc = h->data->isc;
    if (!isc->actions)
        return BSDL_RESULT_MISSING;

    const IscTables *tables = isc_tables(h, isc);
    int32_t result = 0;
    for (const IscAction *action : items<IscAction>(isc->actions)) {
        for (const IscActionSpecEntry *entry : items<IscActionSpecEntry>(action->specs)) {
            const IscActionSpec *spec = &entry->spec;
            if (!spec->procedure_name ||
                index_find(&tables->procedures_by_name,
                           isc_name_key(spec->procedure_name, spec->data_name)) != INDEX_NONE)
                continue;
            Rule rule = {"isc-action-procedure-unknown", entry->place};
            result |=
                spec->data_name
                    ? rule_error(rule,
                                 "procedure spec: \"%s(%s)\" does not exist in procedure_list",
                                 spec->procedure_name, spec->data_name)
                    : rule_error(rule, "procedure name: \"%s\" does not exist in procedure_list",
                                 spec->procedure_name);
        }
    }
    return check_end(h, result);
}
