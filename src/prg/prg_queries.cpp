// Queries on PPC/PRG data files. The current channel decides which component settings are seen. The
// current program decides which part's IEEE 1532 statements are seen.

#include "prg/prg.h"

static PrgData *prg_of(Bsdl *h) { return h ? h->prg : nullptr; }

// The list as an array with an index. A file's lists do not change once it has been read.
template <class T, class Key>
static void table_build(Bsdl *bsdl, PrgTable *table, const GSList *list, Key key)
{
    if (table->by_key.built)
        return;
    Arena *arena = &bsdl->arena;
    table->items = list_table(arena, list, &table->count);
    index_start(&table->by_key, arena, table->count);
    for (uint32_t at = 0; at < table->count; at++)
        index_first(&table->by_key, key(static_cast<T *>(table->items[at])), at);
}

static PrgTable *channels_of(Bsdl *h)
{
    PrgTable *table = &h->prg->channel_table;
    table_build<PrgChannel>(h, table, h->prg->serial_channels, [](const PrgChannel *channel) {
        return static_cast<uint32_t>(channel->channel_id);
    });
    return table;
}

static PrgTable *settings_of(Bsdl *h, PrgChannel *channel)
{
    table_build<PrgComponentSetting>(
        h, &channel->setting_table, channel->settings,
        [](const PrgComponentSetting *setting) { return name_fold(setting->part_name); });
    return &channel->setting_table;
}

static PrgTable *programs_of(Bsdl *h)
{
    PrgTable *table = &h->prg->program_table;
    table_build<PrgProgramSpec>(
        h, table, h->prg->program_references,
        [](const PrgProgramSpec *program) { return name_fold(program->part_name); });
    return table;
}

template <class T> static T *item_at(const PrgTable *table, uint32_t at)
{
    return at < table->count ? static_cast<T *>(table->items[at]) : nullptr;
}

template <class T, class Field>
static Field field_of(const T *record, Field T::*field, Field without = Field{})
{
    return record ? record->*field : without;
}

static uint32_t find_named(Bsdl *h, const PrgTable *table, const char *name)
{
    const char *known = name ? name_find(&h->names, name) : nullptr;
    return known ? index_find(&table->by_key, name_fold(known)) : INDEX_NONE;
}

PrgPart *find_part_type(Bsdl *bsdl, const char *name)
{
    PrgTable *table = &bsdl->prg->type_table;
    table_build<PrgPart>(bsdl, table, bsdl->prg->isc_components,
                         [](const PrgPart *part) { return name_fold(part->part_name); });
    return name ? item_at<PrgPart>(table, index_find(&table->by_key, name_fold(name))) : nullptr;
}

// -------------------------------------------------------------------------------------- the design

const char *bsdlPrgDesignName(Bsdl *h) { return field_of(prg_of(h), &PrgData::design_name); }

const char *bsdlPrgRevision(Bsdl *h) { return field_of(prg_of(h), &PrgData::revision); }

int32_t bsdlPrgFrequency(Bsdl *h) { return field_of(prg_of(h), &PrgData::frequency); }

// ---------------------------------------------------------------------------------------- channels

static PrgChannel *current_channel(Bsdl *h)
{
    return prg_of(h) ? item_at<PrgChannel>(channels_of(h), h->prg->tap_cursor) : nullptr;
}

int32_t bsdlPrgNbrOfTaps(Bsdl *h)
{
    uint32_t count = prg_of(h) ? channels_of(h)->count : 0;
    return count ? static_cast<int32_t>(count) : -1;
}

int32_t bsdlPrgFirstTap(Bsdl *h)
{
    if (prg_of(h))
        h->prg->tap_cursor = 0;
    return bsdlPrgCurrTap(h);
}

int32_t bsdlPrgNextTap(Bsdl *h)
{
    // The cursor may go one step beyond the end.
    if (prg_of(h) && h->prg->tap_cursor <= channels_of(h)->count)
        h->prg->tap_cursor++;
    return bsdlPrgCurrTap(h);
}

int32_t bsdlPrgSelectTap(Bsdl *h, int32_t tap)
{
    if (!prg_of(h))
        return -1;
    uint32_t at = index_find(&channels_of(h)->by_key, static_cast<uint32_t>(tap));
    if (at == INDEX_NONE)
        return -1;
    h->prg->tap_cursor = at;
    return static_cast<int32_t>(at);
}

int32_t bsdlPrgCurrTap(Bsdl *h)
{
    return field_of(current_channel(h), &PrgChannel::channel_id, -1);
}

// ------------------------------------------------------------------------------ component settings

static PrgComponentSetting *current_setting(Bsdl *h)
{
    PrgChannel *channel = current_channel(h);
    return channel
               ? item_at<PrgComponentSetting>(settings_of(h, channel), channel->component_cursor)
               : nullptr;
}

int32_t bsdlPrgNbrOfComponents(Bsdl *h)
{
    PrgChannel *channel = current_channel(h);
    uint32_t count = channel ? settings_of(h, channel)->count : 0;
    return count ? static_cast<int32_t>(count) : -1;
}

PrgComponentSetting *bsdlPrgFirstComponent(Bsdl *h)
{
    if (PrgChannel *channel = current_channel(h))
        channel->component_cursor = 0;
    return current_setting(h);
}

PrgComponentSetting *bsdlPrgNextComponent(Bsdl *h)
{
    PrgChannel *channel = current_channel(h);
    if (channel && channel->component_cursor < settings_of(h, channel)->count)
        channel->component_cursor++;
    return current_setting(h);
}

PrgComponentSetting *bsdlPrgSelectComponent(Bsdl *h, const char *part_name)
{
    PrgChannel *channel = current_channel(h);
    if (!channel)
        return nullptr;
    uint32_t at = find_named(h, settings_of(h, channel), part_name);
    if (at == INDEX_NONE)
        return nullptr;
    channel->component_cursor = at;
    return current_setting(h);
}

const char *bsdlPrgComponentName(Bsdl *h)
{
    return field_of(current_setting(h), &PrgComponentSetting::part_name);
}

const char *bsdlPrgComponentInstr(Bsdl *h)
{
    return field_of(current_setting(h), &PrgComponentSetting::instruction_name);
}

// ---------------------------------------------------------------------------------------- programs

// Selects the part that the queries on IEEE 1532 statements see from now on: the type of the
// current program, when it is an IEEE 1532 program and the file describes the type.
static PrgProgramSpec *select_program(Bsdl *h)
{
    PrgData *prg = h->prg;
    prg->selected_isc_component = nullptr;
    PrgProgramSpec *program = bsdlPrgCurrProgPart(h);
    if (!program)
        return nullptr;
    if (program->program_type == PRG_PROGRAM_TYPE_ISC)
        prg->selected_isc_component = find_part_type(h, program->part_type);
    program->component = prg->selected_isc_component ? prg->selected_isc_component->isc : nullptr;
    return program;
}

int32_t bsdlPrgNbrOfProgParts(Bsdl *h)
{
    uint32_t count = prg_of(h) ? programs_of(h)->count : 0;
    return count ? static_cast<int32_t>(count) : -1;
}

PrgProgramSpec *bsdlPrgFirstProgPart(Bsdl *h)
{
    if (!prg_of(h))
        return nullptr;
    h->prg->prog_part_cursor = 0;
    return select_program(h);
}

PrgProgramSpec *bsdlPrgNextProgPart(Bsdl *h)
{
    if (!prg_of(h))
        return nullptr;
    // The cursor may go one step beyond the end.
    if (h->prg->prog_part_cursor <= programs_of(h)->count)
        h->prg->prog_part_cursor++;
    return select_program(h);
}

PrgProgramSpec *bsdlPrgSelectProgPart(Bsdl *h, const char *part_name)
{
    if (!prg_of(h))
        return nullptr;
    uint32_t at = find_named(h, programs_of(h), part_name);
    if (at == INDEX_NONE)
        return nullptr;
    h->prg->prog_part_cursor = at;
    PrgProgramSpec *program = select_program(h);
    h->data->isc = static_cast<IscData *>(program->component);
    return program;
}

PrgProgramSpec *bsdlPrgCurrProgPart(Bsdl *h)
{
    return prg_of(h) ? item_at<PrgProgramSpec>(programs_of(h), h->prg->prog_part_cursor) : nullptr;
}

int32_t bsdlPrgProgProgType(Bsdl *h)
{
    return field_of(bsdlPrgCurrProgPart(h), &PrgProgramSpec::program_type, -1);
}

const char *bsdlPrgProgPartName(Bsdl *h)
{
    return field_of(bsdlPrgCurrProgPart(h), &PrgProgramSpec::part_name);
}

const char *bsdlPrgProgPartType(Bsdl *h)
{
    return field_of(bsdlPrgCurrProgPart(h), &PrgProgramSpec::part_type);
}

const char *bsdlPrgProgInFile(Bsdl *h)
{
    return field_of(bsdlPrgCurrProgPart(h), &PrgProgramSpec::in_file);
}

const char *bsdlPrgProgOutFile(Bsdl *h)
{
    return field_of(bsdlPrgCurrProgPart(h), &PrgProgramSpec::out_file);
}
