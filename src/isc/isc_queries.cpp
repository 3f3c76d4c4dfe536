// What hosts ask: single values, and the tree of actions, procedures, flows, blocks, activities and
// fields. What is selected at one level decides what the next one sees; the positions are kept in
// the records. A level that finds nothing hides all levels below it.

#include "frame/check.h"
#include "isc/isc.h"
#include "prg/prg.h"

#include <cstring>

// The statements of a description that has passed bsdl_check_isc(), or of the selected part of a
// data file. The check of a data file is run here when the host has not run it. NULL also when a
// sink of that check has released the handle.
static IscData *current_isc(Bsdl *bsdl)
{
    if (!bsdl || !bsdl->data)
        return nullptr;
    bool passed = (bsdl->data->check_passed & CHECK_PASSED_ISC) != 0;
    if (bsdlIs1532(bsdl) && passed)
        return bsdl->data->isc;
    if (!bsdlIsPrg(bsdl))
        return nullptr;
    if (!passed) {
        const Call call(bsdl);
        if (bsdl_check_prg(bsdl) != 0 || bsdl->give_back)
            return nullptr;
    }
    const PrgPart *part = bsdl->prg->selected_isc_component;
    return part ? part->isc : nullptr;
}

// ------------------------------------------------------------------------------------- the lists

// Most of these lists keep their cursor as the records of the callers do.
static Iteration iteration_of(ListWalk *walk, const GSList *list, int32_t *cursor)
{
    return {walk, list, reinterpret_cast<uint32_t *>(cursor)};
}

static int32_t count_of(const Iteration &list) { return list.walk ? iteration_count(list) : -1; }

// The element at the cursor. After a walk to the end the last element is still the current one.
template <class T> static T *current_of(const Iteration &list)
{
    if (!list.walk)
        return nullptr;
    uint32_t length = list_count(list.walk, list.head);
    if (length && *list.cursor == length)
        --*list.cursor;
    return static_cast<T *>(list_at(list.walk, list.head, *list.cursor));
}

// A name and its data name; 0 when the description does not hold them.
static uint64_t host_key(const Bsdl *bsdl, const char *name, const char *data_name)
{
    const char *known = name ? name_find(&bsdl->names, name) : nullptr;
    const char *known_data = data_name ? name_find(&bsdl->names, data_name) : nullptr;
    if (!known || (data_name && !known_data))
        return 0;
    return isc_name_key(known, known_data);
}

// The first element of these names, where the cursor goes then; a miss leaves it.
template <class T>
static T *select_of(const Bsdl *bsdl, const Iteration &list, const char *T::*own_name,
                    const char *name, const char *data_name)
{
    uint64_t key = list.walk ? host_key(bsdl, name, data_name) : 0;
    uint32_t position = 0;
    for (const auto *link = static_cast<const GSList *>(list.head); key && link;
         link = link->next, position++) {
        auto *element = static_cast<T *>(link->data);
        if (isc_name_key(element->*own_name, element->data_name) == key) {
            *list.cursor = position;
            return element;
        }
    }
    return nullptr;
}

// ------------------------------------------------------------------------------- single values

template <class T> static T value_of(Bsdl *bsdl, T IscData::*value)
{
    const IscData *isc = current_isc(bsdl);
    return isc ? isc->*value : T{};
}

int32_t bsdlIscConformance(Bsdl *h) { return value_of(h, &IscData::conformance); }

int32_t bsdlIscPinBehavior(Bsdl *h) { return value_of(h, &IscData::pin_behavior); }

int32_t bsdlIscStatus(Bsdl *h) { return value_of(h, &IscData::status); }

const char *bsdlIscBlankUserStream(Bsdl *h) { return value_of(h, &IscData::blank_usercode); }

IscSecurity *bsdlIscSecurity(Bsdl *h) { return value_of(h, &IscData::security); }

const char *bsdlIscDesignWarning(Bsdl *h) { return value_of(h, &IscData::design_warning); }

// -------------------------------------------------------------------- fixed pins, illegal exits

static Iteration fixed_pins(Bsdl *bsdl)
{
    IscData *isc = current_isc(bsdl);
    return isc ? Iteration{&isc->fixed_pin_walk, isc->fixed_pins, &isc->fixed_pin_cursor}
               : Iteration{};
}

PortId *bsdlIscFirstFixedPin(Bsdl *h) { return iteration_first<PortId>(fixed_pins(h)); }

PortId *bsdlIscNextFixedPin(Bsdl *h) { return iteration_next<PortId>(fixed_pins(h)); }

static Iteration illegal_exits(Bsdl *bsdl)
{
    IscData *isc = current_isc(bsdl);
    return isc ? Iteration{&isc->illegal_exit_walk, isc->illegal_exits, &isc->illegal_exit_cursor}
               : Iteration{};
}

const char *bsdlIscFirstIllegalExit(Bsdl *h) { return iteration_first<char>(illegal_exits(h)); }

const char *bsdlIscNextIllegalExit(Bsdl *h) { return iteration_next<char>(illegal_exits(h)); }

// ------------------------------------------------------------------------------------- actions

static Iteration actions(IscData *isc)
{
    return isc ? iteration_of(&isc->action_walk, isc->actions, &isc->action_cursor) : Iteration{};
}

int32_t bsdlIscNbrOfActions(Bsdl *h) { return count_of(actions(current_isc(h))); }

IscAction *bsdlIscFirstAction(Bsdl *h)
{
    return iteration_first<IscAction>(actions(current_isc(h)));
}

IscAction *bsdlIscNextAction(Bsdl *h) { return iteration_next<IscAction>(actions(current_isc(h))); }

IscAction *bsdlIscSelectAction(Bsdl *h, const char *name, const char *data_name)
{
    return select_of(h, actions(current_isc(h)), &IscAction::action_name, name, data_name);
}

// ---------------------------------------------------------------------------------- procedures

// The procedures of the current action.
static Iteration procedures(IscData *isc)
{
    auto *action = current_of<IscAction>(actions(isc));
    return action ? iteration_of(&isc->spec_walk, action->specs, &action->spec_cursor)
                  : Iteration{};
}

// The same, for the queries that also end the selection of a procedure taken directly, even when
// they find none.
static Iteration procedures_again(IscData *isc)
{
    if (isc && isc->actions)
        isc->procedure_cursor = 0;
    return procedures(isc);
}

int32_t bsdlIscNbrOfProcedures(Bsdl *h) { return count_of(procedures(current_isc(h))); }

IscActionSpec *bsdlIscFirstProc(Bsdl *h)
{
    return iteration_first<IscActionSpec>(procedures_again(current_isc(h)));
}

IscActionSpec *bsdlIscNextProc(Bsdl *h)
{
    return iteration_next_below<IscActionSpec>(procedures_again(current_isc(h)));
}

IscActionSpec *bsdlIscSelectProc(Bsdl *h, const char *name, const char *data_name)
{
    IscData *isc = current_isc(h);
    if (!name)
        return nullptr;
    return select_of(h, procedures_again(isc), &IscActionSpec::procedure_name, name, data_name);
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
    if (isc->procedure_cursor)
        position = static_cast<uint32_t>(isc->procedure_cursor) - 1;
    else if (const auto *spec = current_of<IscActionSpec>(procedures(isc)))
        position = index_find(&tables->procedures_by_name,
                              isc_name_key(spec->procedure_name, spec->data_name));
    return position < tables->procedure_count ? tables->procedures[position] : nullptr;
}

// --------------------------------------------------------------------------------------- flows

static Iteration flows(Bsdl *bsdl, IscData *isc)
{
    IscProcedure *procedure = current_procedure(bsdl, isc);
    return procedure
               ? iteration_of(&isc->procedure_flow_walk, procedure->flows, &procedure->flow_cursor)
               : Iteration{};
}

// Makes the flow that the procedure's next descriptor names the current one. Name and data name are
// given as the procedure writes them.
static IscFlowInfo *enter_flow(Bsdl *bsdl, IscFlowDescriptor *(*step)(const Iteration &))
{
    IscData *isc = current_isc(bsdl);
    const IscFlowDescriptor *descriptor = step(flows(bsdl, isc));
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

int32_t bsdlIscNbrOfFlows(Bsdl *h) { return count_of(flows(h, current_isc(h))); }

IscFlowInfo *bsdlIscFirstFlow(Bsdl *h) { return enter_flow(h, iteration_first<IscFlowDescriptor>); }

IscFlowInfo *bsdlIscNextFlow(Bsdl *h)
{
    return enter_flow(h, iteration_next_below<IscFlowDescriptor>);
}

static IscFlow *current_flow(Bsdl *bsdl, IscData *isc)
{
    if (!isc)
        return nullptr;
    const IscTables *tables = isc_tables(bsdl, isc);
    auto position = static_cast<uint32_t>(isc->flow_cursor);
    return position < tables->flow_count ? tables->flows[position] : nullptr;
}

// -------------------------------------------------------------------------------------- blocks

static Iteration blocks(IscData *isc, IscFlow *flow)
{
    return flow ? iteration_of(&isc->block_walk, flow->blocks, &flow->block_cursor) : Iteration{};
}

static int32_t enter_block(Bsdl *bsdl, IscBlock *(*step)(const Iteration &))
{
    IscData *isc = current_isc(bsdl);
    IscFlow *flow = current_flow(bsdl, isc);
    const IscBlock *block = step(blocks(isc, flow));
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
    return count_of(blocks(isc, current_flow(h, isc)));
}

int32_t bsdlIscFirstFlowBlock(Bsdl *h) { return enter_block(h, iteration_first<IscBlock>); }

int32_t bsdlIscNextFlowBlock(Bsdl *h) { return enter_block(h, iteration_next_below<IscBlock>); }

static IscBlock *current_block(Bsdl *bsdl, IscData *isc)
{
    Iteration list = blocks(isc, current_flow(bsdl, isc));
    return list.walk ? static_cast<IscBlock *>(list_at(list.walk, list.head, *list.cursor))
                     : nullptr;
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

static Iteration activities(IscData *isc, IscBlock *block)
{
    return block ? iteration_of(&isc->activity_walk, block->activities, &block->activity_cursor)
                 : Iteration{};
}

// An activity whose wait was in error has no record, but it becomes the current one.
static IscActivityInfo *enter_activity(Bsdl *bsdl, IscActivity *(*step)(const Iteration &))
{
    IscData *isc = current_isc(bsdl);
    IscBlock *block = current_block(bsdl, isc);
    if (!block)
        return nullptr;
    IscActivity *activity = step(activities(isc, block));
    block->current_activity = activity;
    if (!activity || (activity->kind == ISC_ACTIVITY_PLAIN && !activity->wait))
        return nullptr;
    IscActivityInfo *info = g_try_new0(IscActivityInfo, 1);
    if (info)
        describe_activity(activity, info);
    return info;
}

void bsdlIscFreeActivity(IscActivityInfo *info) { g_free(info); }

int32_t bsdlIscNbrOfActivities(Bsdl *h)
{
    IscData *isc = current_isc(h);
    return count_of(activities(isc, current_block(h, isc)));
}

IscActivityInfo *bsdlIscFirstActivity(Bsdl *h)
{
    return enter_activity(h, iteration_first<IscActivity>);
}

IscActivityInfo *bsdlIscNextActivity(Bsdl *h)
{
    return enter_activity(h, iteration_next_below<IscActivity>);
}

// -------------------------------------------------------------------------------------- fields

static IscActivity *current_activity(Bsdl *bsdl, IscData *isc)
{
    const IscBlock *block = current_block(bsdl, isc);
    return block ? block->current_activity : nullptr;
}

static Iteration updates(Bsdl *bsdl)
{
    IscData *isc = current_isc(bsdl);
    IscActivity *activity = current_activity(bsdl, isc);
    return activity
               ? Iteration{&isc->update_walk, activity->update_fields, &activity->update_cursor}
               : Iteration{};
}

int32_t bsdlIscNbrOfUpdateStreams(Bsdl *h) { return count_of(updates(h)); }

IscUpdateField *bsdlIscFirstUpdateStream(Bsdl *h)
{
    return iteration_first<IscUpdateField>(updates(h));
}

IscUpdateField *bsdlIscNextUpdateStream(Bsdl *h)
{
    return iteration_next_below<IscUpdateField>(updates(h));
}

static Iteration captures(Bsdl *bsdl)
{
    IscData *isc = current_isc(bsdl);
    IscActivity *activity = current_activity(bsdl, isc);
    return activity
               ? Iteration{&isc->capture_walk, activity->capture_fields, &activity->capture_cursor}
               : Iteration{};
}

int32_t bsdlIscNbrOfCaptureStreams(Bsdl *h) { return count_of(captures(h)); }

IscCaptureField *bsdlIscFirstCaptureStream(Bsdl *h)
{
    return iteration_first<IscCaptureField>(captures(h));
}

IscCaptureField *bsdlIscNextCaptureStream(Bsdl *h)
{
    return iteration_next_below<IscCaptureField>(captures(h));
}
