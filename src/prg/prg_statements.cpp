// What the grammar calls for the statements of PPC/PRG data files.

#include "frame/messages.h"
#include "prg/prg.h"
#include "scan/scanner.h"

#include <cstring>

void design_declared(Bsdl *bsdl, const char *name)
{
    bsdl->prg->design_name = name;
    bsdl->sources.entity = scan_place(bsdl);
}

void design_named(Bsdl *bsdl, const char *name)
{
    if (!same_name(name, bsdl->prg->design_name))
        parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "design-name-mismatch",
                      "Design name '%s' not consistent", name);
}

void design_revision_passed(Bsdl *bsdl, const char *revision)
{
    bsdl->prg->revision = revision;
    statement_passed(bsdl, "\tDesign revision statement passed");
}

void design_revision_skipped(Bsdl *bsdl)
{
    bsdl->prg->revision = nullptr;
    statement_skipped(bsdl, "Skipping design_revision due to errors");
}

void frequency_passed(Bsdl *bsdl, int32_t frequency)
{
    bsdl->prg->frequency = frequency;
    statement_passed(bsdl, "\tFrequency statement passed");
}

// ----------------------------------------------------------------------------------- scan channels

const char *register_values_join(Bsdl *bsdl, List patterns)
{
    size_t length = 0;
    for (const char *pattern : items<char>(patterns.head))
        length += std::strlen(pattern);
    auto *joined = arena_array<char>(&bsdl->arena, length + 1);
    if (!joined)
        return "";
    char *at = joined;
    for (const char *pattern : items<char>(patterns.head))
        at = stpcpy(at, pattern);
    return joined;
}

PrgComponentSetting *component_setting_new(Bsdl *bsdl, const char *part_name,
                                           const char *instruction_name, const char *values)
{
    auto *setting = model_new<PrgComponentSetting>(bsdl);
    setting->part_name = part_name;
    setting->instruction_name = instruction_name;
    setting->register_values = values;
    return setting;
}

PrgChannel *channel_new(Bsdl *bsdl, int32_t channel_id, List settings, Place place)
{
    auto *channel = model_new<PrgChannel>(bsdl);
    channel->channel_id = channel_id;
    channel->settings = settings.head;
    channel->place = place;
    return channel;
}

void serial_channels_absent(Bsdl *bsdl)
{
    bsdl->prg->serial_channels = nullptr;
    statement_absent(bsdl, "\tNo serial channels statement");
}

void serial_channels_passed(Bsdl *bsdl, List channels)
{
    bsdl->prg->serial_channels = channels.head;
    statement_passed(bsdl, "\tSerial channels statement passed");
}

void serial_channels_skipped(Bsdl *bsdl)
{
    bsdl->prg->serial_channels = nullptr;
    statement_skipped(bsdl, "Skipping serial channels due to errors");
}

// ---------------------------------------------------------------------------------------- programs

int32_t program_type_jcs(int32_t number)
{
    return static_cast<int32_t>(static_cast<uint32_t>(number) + PRG_PROGRAM_TYPE_JCS);
}

PrgProgramSpec *program_new(Bsdl *bsdl, int32_t program_type, const char *part_name,
                            const char *part_type, PrgFiles files, Place place)
{
    auto *program = model_new<PrgProgram>(bsdl);
    program->spec.program_type = program_type;
    program->spec.part_name = part_name;
    program->spec.part_type = part_type;
    program->spec.in_file = files.in_file;
    program->spec.out_file = files.out_file;
    program->place = place;
    return &program->spec;
}

void program_reference_passed(Bsdl *bsdl, List programs)
{
    bsdl->prg->program_references = programs.head;
    statement_passed(bsdl, "\tProgram reference statement passed");
}

// -------------------------------------------------------------------------------------- part types

void isc_component_passed(Bsdl *bsdl, Place place)
{
    PrgData *prg = bsdl->prg;
    auto *part = model_new<PrgPart>(bsdl);
    part->part_name = prg->component_name;
    part->isc = bsdl->data->isc;
    part->place = place;
    prg->component_name = nullptr;
    prg->isc_component_list = model_append(bsdl, prg->isc_component_list, part);
    prg->isc_components = prg->isc_component_list.head;
    parse_message(bsdl, BSDL_LEVEL_INFO, 2, nullptr, "\tPPC/PRG ISC Component '%s' passed",
                  shown(part->part_name));
}
