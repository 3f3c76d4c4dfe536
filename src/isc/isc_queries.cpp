// What hosts ask: single values, and the tree of actions, procedures, flows, blocks, activities and
// fields. What is selected at one level decides what the next one sees; the positions are kept in
// the records. Each step of the way down may find nothing, and then all below it does.

#include "frame/check.h"
#include "isc/isc.h"
#include "prg/prg.h"

#include <cstring>

// Of a description that has passed bsdl_check_isc(), or of the selected part of a data file, whose
// check is made up for here.
static IscData *current_isc(Bsdl *bsdl)
{
    if (!bsdl || !bsdl->data)
        return nullptr;
    bool passed = (bsdl->data->check_passed & CHECK_PASSED_ISC) != 0;
    if (bsdlIs1532(bsdl) && passed)
        return bsdl->data->isc;
    if (!bsdlIsPrg(bsdl) || (!passed && bsdl_check_prg(bsdl) != 0) || !bsdl->prg)
        return nullptr;
    const PrgPart *part = bsdl->prg->selected_isc_component;
    return part ? part->isc : nullptr;
}

static uint32_t *unsigned_cursor(int32_t *cursor) { return reinterpret_cast<uint32_t *>(cursor); }

// The element at the cursor. After a walk to the end the last element is still the current one.
static void *current_element(ListWalk *walk, GSList *list, int32_t *cursor)
{
    uint32_t length = list_count(walk, list);
    if (length && static_cast<uint32_t>(*cursor) == length)
        --*cursor;
    return list_at(walk, list, static_cast<uint32_t>(*cursor));
}

// ---------------------------------------------------------------------------- names from a host

// A name and its data name; `key` is 0 when the description does not hold them.
static uint64_t host_key(const Bsdl *bsdl, const char *name, const char *data_name)
{
    const char *known = name_find(&bsdl->names, name);
    const char *known_data = data_name ? name_find(&bsdl->names, data_name) : nullptr;
    if (!known || (data_name && !known_data))
        return 0;
    return isc_name_key(known, known_data);
}

static IscFlowInfo *flow_info_new(const char *name, const char *data_name, uint32_t flags,
                                  int32_t variable_count)
{
    IscFlowInfo *info = g_try_new0(IscFlowInfo, 1);
    if (info)
        *info = {.flow_name = name,
                 .data_name = data_name,
                 .flags = flags,
                 .variable_count = variable_count};
    return info;
}

void bsdlIscFreeFlow(IscFlowInfo *info) { g_free(info); }

void bsdlIscFreeActivity(IscActivityInfo *info) { g_free(info); }

// ------------------------------------------------------------------------------- single values

int32_t bsdlIscConformance(Bsdl *h)
{
    const IscData *isc = current_isc(h);
    return isc ? isc->conformance : ISC_CONFORMANCE_NONE;
}

int32_t bsdlIscPinBehavior(Bsdl *h)
{
    const IscData *isc = current_isc(h);
    return isc ? isc->pin_behavior : ISC_PIN_BEHAVIOR_NONE;
}

int32_t bsdlIscStatus(Bsdl *h)
{
    const IscData *isc = current_isc(h);
    return isc ? isc->status : ISC_STATUS_NONE;
}

const char *bsdlIscBlankUserStream(Bsdl *h)
{
    const IscData *isc = current_isc(h);
    return isc ? isc->blank_usercode : nullptr;
}

IscSecurity *bsdlIscSecurity(Bsdl *h)
{
    const IscData *isc = current_isc(h);
    return isc ? isc->security : nullptr;
}

const char *bsdlIscDesignWarning(Bsdl *h)
{
    const IscData *isc = current_isc(h);
    return isc ? isc->design_warning : nullptr;
}

// -------------------------------------------------------------------- fixed pins, illegal exits

PortId *bsdlIscFirstFixedPin(Bsdl *h)
{
    IscData *isc = current_isc(h);
    if (!isc)
        return nullptr;
    return static_cast<PortId *>(
        list_first(&isc->fixed_pin_walk, isc->fixed_pins, &isc->fixed_pin_cursor));
}

PortId *bsdlIscNextFixedPin(Bsdl *h)
{
    IscData *isc = current_isc(h);
    if (!isc)
        return nullptr;
    return static_cast<PortId *>(
        list_next(&isc->fixed_pin_walk, isc->fixed_pins, &isc->fixed_pin_cursor));
}

const char *bsdlIscFirstIllegalExit(Bsdl *h)
{
    IscData *isc = current_isc(h);
    if (!isc)
        return nullptr;
    return static_cast<const char *>(
        list_first(&isc->illegal_exit_walk, isc->illegal_exits, &isc->illegal_exit_cursor));
}

const char *bsdlIscNextIllegalExit(Bsdl *h)
{
    IscData *isc = current_isc(h);
    if (!isc)
        return nullptr;
    return static_cast<const char *>(
        list_next(&isc->illegal_exit_walk, isc->illegal_exits, &isc->illegal_exit_cursor));
}

// ------------------------------------------------------------------------------------- actions

static IscAction *current_action(IscData *isc)
{
    if (!isc)
        return nullptr;
    return static_cast<IscAction *>(
        current_element(&isc->action_walk, isc->actions, &isc->action_cursor));
}

int32_t bsdlIscNbrOfActions(Bsdl *h)
{
    IscData *isc = current_isc(h);
    return isc ? static_cast<int32_t>(list_count(&isc->action_walk, isc->actions)) : -1;
}

IscAction *bsdlIscFirstAction(Bsdl *h)
{
    IscData *isc = current_isc(h);
    if (!isc)
        return nullptr;
    return static_cast<IscAction *>(
        list_first(&isc->action_walk, isc->actions, unsigned_cursor(&isc->action_cursor)));
}

IscAction *bsdlIscNextAction(Bsdl *h)
{
    IscData *isc = current_isc(h);
    if (!isc)
        return nullptr;
    return static_cast<IscAction *>(
        list_next(&isc->action_walk, isc->actions, unsigned_cursor(&isc->action_cursor)));
}

IscAction *bsdlIscSelectAction(Bsdl *h, const char *name, const char *data_name)
{
    IscData *isc = current_isc(h);
    if (!isc || !name)
        return nullptr;
    uint64_t key = host_key(h, name, data_name);
    int32_t position = 0;
    for (const GSList *link = isc->actions; key && link; link = link->next, position++) {
        auto *action = static_cast<IscAction *>(link->data);
        if (isc_name_key(action->action_name, action->data_name) == key) {
            isc->action_cursor = position;
            return action;
        }
    }
    return nullptr;
}

// ---------------------------------------------------------------------------------- procedures

int32_t bsdlIscNbrOfProcedures(Bsdl *h)
{
    IscData *isc = current_isc(h);
    const IscAction *action = current_action(isc);
    return action ? static_cast<int32_t>(list_count(&isc->spec_walk, action->specs)) : -1;
}

// The action's procedures count again, also when none is found.
static IscAction *action_for_procedures(IscData *isc)
{
    if (!isc || !isc->actions)
        return nullptr;
    isc->procedure_cursor = 0;
    return current_action(isc);
}

IscActionSpec *bsdlIscFirstProc(Bsdl *h)
{
    IscData *isc = current_isc(h);
    IscAction *action = action_for_procedures(isc);
    if (!action)
        return nullptr;
    return static_cast<IscActionSpec *>(
        list_first(&isc->spec_walk, action->specs, unsigned_cursor(&action->spec_cursor)));
}

IscActionSpec *bsdlIscNextProc(Bsdl *h)
{
    IscData *isc = current_isc(h);
    IscAction *action = action_for_procedures(isc);
    if (!action)
        return nullptr;
    return static_cast<IscActionSpec *>(
        list_next_below(&isc->spec_walk, action->specs, unsigned_cursor(&action->spec_cursor)));
}

IscActionSpec *bsdlIscSelectProc(Bsdl *h, const char *name, const char *data_name)
{
    IscData *isc = current_isc(h);
    if (!isc || !name)
        return nullptr;
    IscAction *action = action_for_procedures(isc);
    if (!action)
        return nullptr;
    uint64_t key = host_key(h, name, data_name);
    int32_t position = 0;
    for (const GSList *link = action->specs; key && link; link = link->next, position++) {
        auto *spec = static_cast<IscActionSpec *>(link->data);
        if (isc_name_key(spec->procedure_name, spec->data_name) == key) {
            action->spec_cursor = position;
            return spec;
        }
    }
    return nullptr;
}

IscFlowInfo *bsdlIscGetProc(Bsdl *h, const char *name, const char *data_name)
{
    IscData *isc = current_isc(h);
    if (!isc || !name || !isc->procedures)
        return nullptr;
    isc->procedure_cursor = 0;
    const IscTables *tables = isc_tables(h, isc);
    uint64_t key = host_key(h, name, data_name);
    uint32_t position = key ? index_find(&tables->procedures_by_name, key) : INDEX_NONE;
    if (position == INDEX_NONE)
        return nullptr;
    isc->procedure_cursor = static_cast<int32_t>(position) + 1;
    const IscProcedure *procedure = tables->procedures[position];
    return flow_info_new(procedure->procedure_name, procedure->data_name, 0, 0);
}

// The procedure taken directly, else the one that the current action's specification names.
static IscProcedure *current_procedure(Bsdl *bsdl, IscData *isc)
{
    if (!isc)
        return nullptr;
    const IscTables *tables = isc_tables(bsdl, isc);
    uint32_t position = INDEX_NONE;
    if (isc->procedure_cursor) {
        position = static_cast<uint32_t>(isc->procedure_cursor) - 1;
    } else if (IscAction *action = current_action(isc)) {
        const auto *spec = static_cast<const IscActionSpec *>(
            current_element(&isc->spec_walk, action->specs, &action->spec_cursor));
        if (spec)
            position = index_find(&tables->procedures_by_name,
                                  isc_name_key(spec->procedure_name, spec->data_name));
    }
    return position < tables->procedure_count ? tables->procedures[position] : nullptr;
}

// --------------------------------------------------------------------------------------- flows

static IscFlow *current_flow(Bsdl *bsdl, IscData *isc)
{
    if (!isc)
        return nullptr;
    const IscTables *tables = isc_tables(bsdl, isc);
    auto position = static_cast<uint32_t>(isc->flow_cursor);
    return position < tables->flow_count ? tables->flows[position] : nullptr;
}

// Makes the flow that the procedure's descriptor names the current one. Name and data name are
// given as the procedure writes them.
static IscFlowInfo *select_flow(Bsdl *bsdl, IscData *isc, const IscFlowDescriptor *descriptor)
{
    if (!descriptor)
        return nullptr;
    const IscTables *tables = isc_tables(bsdl, isc);
    uint32_t position = index_find(&tables->flows_by_name,
                                   isc_name_key(descriptor->flow_name, descriptor->data_name));
    if (position == INDEX_NONE)
        return nullptr;
    isc->flow_cursor = static_cast<int32_t>(position);
    const IscFlow *flow = tables->flows[position];
    uint32_t flags = (flow->descriptor->unprocessed ? ISC_FLOW_UNPROCESSED : 0) |
                     (flow->descriptor->exit_on_error ? ISC_FLOW_EXIT_ON_ERROR : 0);
    return flow_info_new(descriptor->flow_name, descriptor->data_name, flags, flow->variable_count);
}

int32_t bsdlIscNbrOfFlows(Bsdl *h)
{
    IscData *isc = current_isc(h);
    const IscProcedure *procedure = current_procedure(h, isc);
    if (!procedure)
        return -1;
    return static_cast<int32_t>(list_count(&isc->procedure_flow_walk, procedure->flows));
}

IscFlowInfo *bsdlIscFirstFlow(Bsdl *h)
{
    IscData *isc = current_isc(h);
    IscProcedure *procedure = current_procedure(h, isc);
    if (!procedure)
        return nullptr;
    return select_flow(h, isc,
                       static_cast<const IscFlowDescriptor *>(
                           list_first(&isc->procedure_flow_walk, procedure->flows,
                                      unsigned_cursor(&procedure->flow_cursor))));
}

IscFlowInfo *bsdlIscNextFlow(Bsdl *h)
{
    IscData *isc = current_isc(h);
    IscProcedure *procedure = current_procedure(h, isc);
    if (!procedure)
        return nullptr;
    return select_flow(h, isc,
                       static_cast<const IscFlowDescriptor *>(
                           list_next_below(&isc->procedure_flow_walk, procedure->flows,
                                           unsigned_cursor(&procedure->flow_cursor))));
}

// -------------------------------------------------------------------------------------- blocks

static IscBlock *current_block(Bsdl *bsdl, IscData *isc)
{
    const IscFlow *flow = current_flow(bsdl, isc);
    if (!flow)
        return nullptr;
    return static_cast<IscBlock *>(
        list_at(&isc->block_walk, flow->blocks, static_cast<uint32_t>(flow->block_cursor)));
}

static int32_t enter_block(IscFlow *flow, IscBlock *block)
{
    flow->current_block = block;
    if (!block)
        return ISC_BLOCK_NONE;
    switch (block->block_type) {
    case ISC_BLOCK_TYPE_INITIALIZE:
        return ISC_BLOCK_INITIALIZE;
    case ISC_BLOCK_TYPE_TERMINATE:
        return ISC_BLOCK_TERMINATE;
    default:
        return block->repeat_count;
    }
}

int32_t bsdlIscNbrOfFlowBlocks(Bsdl *h)
{
    IscData *isc = current_isc(h);
    const IscFlow *flow = current_flow(h, isc);
    return flow ? static_cast<int32_t>(list_count(&isc->block_walk, flow->blocks)) : -1;
}

int32_t bsdlIscFirstFlowBlock(Bsdl *h)
{
    IscData *isc = current_isc(h);
    IscFlow *flow = current_flow(h, isc);
    if (!flow)
        return ISC_BLOCK_NONE;
    return enter_block(flow,
                       static_cast<IscBlock *>(list_first(&isc->block_walk, flow->blocks,
                                                          unsigned_cursor(&flow->block_cursor))));
}

int32_t bsdlIscNextFlowBlock(Bsdl *h)
{
    IscData *isc = current_isc(h);
    IscFlow *flow = current_flow(h, isc);
    if (!flow)
        return ISC_BLOCK_NONE;
    return enter_block(
        flow, static_cast<IscBlock *>(list_next_below(&isc->block_walk, flow->blocks,
                                                      unsigned_cursor(&flow->block_cursor))));
}

// ---------------------------------------------------------------------------------- activities

static int32_t whole_microseconds(double value)
{
    if (value >= 2147483647.0)
        return INT32_MAX;
    if (value <= -2147483648.0)
        return INT32_MIN;
    return static_cast<int32_t>(value);
}

// The product stays in single precision, so that 2 or 5 microseconds come out whole.
static double microseconds(const IscDuration *duration)
{
    return duration ? static_cast<double>(duration->time * 1000000.0f) : 0;
}

static int32_t clock_cycles(const IscDuration *duration)
{
    return duration && duration->clock_cycles ? duration->clock_cycles->cycle_count : 0;
}

// The shortest wait is rounded up, the longest down.
static void describe_activity(const IscActivity *activity, IscActivityInfo *info)
{
    if (activity->kind != ISC_ACTIVITY_PLAIN) {
        info->v[0] = activity->kind;
        info->v[1] = activity->max_loop;
        info->v[2] = activity->min_loop;
        return;
    }
    const IscDuration *shortest = activity->wait->min_duration;
    const IscDuration *longest = activity->wait->max_duration;
    info->instruction_name = activity->instruction_name;
    info->v[0] = clock_cycles(shortest);
    info->v[1] = whole_microseconds(microseconds(shortest) + 0.9999999);
    info->v[2] = clock_cycles(longest);
    info->v[3] = whole_microseconds(microseconds(longest));
}

// An activity whose wait was in error has no record, and is the current one all the same.
static IscActivityInfo *enter_activity(IscBlock *block, IscActivity *activity)
{
    block->current_activity = activity;
    if (!activity || (activity->kind == ISC_ACTIVITY_PLAIN && !activity->wait))
        return nullptr;
    IscActivityInfo *info = g_try_new0(IscActivityInfo, 1);
    if (info)
        describe_activity(activity, info);
    return info;
}

int32_t bsdlIscNbrOfActivities(Bsdl *h)
{
    IscData *isc = current_isc(h);
    const IscBlock *block = current_block(h, isc);
    return block ? static_cast<int32_t>(list_count(&isc->activity_walk, block->activities)) : -1;
}

IscActivityInfo *bsdlIscFirstActivity(Bsdl *h)
{
    IscData *isc = current_isc(h);
    IscBlock *block = current_block(h, isc);
    if (!block)
        return nullptr;
    return enter_activity(
        block, static_cast<IscActivity *>(list_first(&isc->activity_walk, block->activities,
                                                     unsigned_cursor(&block->activity_cursor))));
}

IscActivityInfo *bsdlIscNextActivity(Bsdl *h)
{
    IscData *isc = current_isc(h);
    IscBlock *block = current_block(h, isc);
    if (!block)
        return nullptr;
    return enter_activity(block, static_cast<IscActivity *>(
                                     list_next_below(&isc->activity_walk, block->activities,
                                                     unsigned_cursor(&block->activity_cursor))));
}

// -------------------------------------------------------------------------------------- fields

static IscActivity *current_activity(Bsdl *bsdl, IscData *isc)
{
    const IscBlock *block = current_block(bsdl, isc);
    return block ? block->current_activity : nullptr;
}

int32_t bsdlIscNbrOfUpdateStreams(Bsdl *h)
{
    IscData *isc = current_isc(h);
    const IscActivity *activity = current_activity(h, isc);
    if (!activity)
        return -1;
    return static_cast<int32_t>(list_count(&isc->update_walk, activity->update_fields));
}

IscUpdateField *bsdlIscFirstUpdateStream(Bsdl *h)
{
    IscData *isc = current_isc(h);
    IscActivity *activity = current_activity(h, isc);
    if (!activity)
        return nullptr;
    return static_cast<IscUpdateField *>(
        list_first(&isc->update_walk, activity->update_fields, &activity->update_cursor));
}

IscUpdateField *bsdlIscNextUpdateStream(Bsdl *h)
{
    IscData *isc = current_isc(h);
    IscActivity *activity = current_activity(h, isc);
    if (!activity)
        return nullptr;
    return static_cast<IscUpdateField *>(
        list_next_below(&isc->update_walk, activity->update_fields, &activity->update_cursor));
}

int32_t bsdlIscNbrOfCaptureStreams(Bsdl *h)
{
    IscData *isc = current_isc(h);
    const IscActivity *activity = current_activity(h, isc);
    if (!activity)
        return -1;
    return static_cast<int32_t>(list_count(&isc->capture_walk, activity->capture_fields));
}

IscCaptureField *bsdlIscFirstCaptureStream(Bsdl *h)
{
    IscData *isc = current_isc(h);
    IscActivity *activity = current_activity(h, isc);
    if (!activity)
        return nullptr;
    return static_cast<IscCaptureField *>(
        list_first(&isc->capture_walk, activity->capture_fields, &activity->capture_cursor));
}

IscCaptureField *bsdlIscNextCaptureStream(Bsdl *h)
{
    IscData *isc = current_isc(h);
    IscActivity *activity = current_activity(h, isc);
    if (!activity)
        return nullptr;
    return static_cast<IscCaptureField *>(
        list_next_below(&isc->capture_walk, activity->capture_fields, &activity->capture_cursor));
}
