// The life of a handle: readBsdl, freeBsdl, bsdlRelease.

#include "frame/reader.h"

#include "base/files.h"
#include "frame/call.h"
#include "frame/lookup.h"
#include "frame/messages.h"
#include "frame/reader_state.h"
#include "ports/ports.h"
#include "prg/prg.h"
#include "registers/registers.h"
#include "scan/scan_state.h"
#include "scan/scanner.h"

#include <cstring>
#include <utility>

namespace
{

// Of a description's text, for each name that is new: about as dense as makers' files get.
constexpr size_t BYTES_PER_NAME = 32;

} // namespace

// Frees the whole handle, also one that was only partly allocated.
static void discard(Bsdl *bsdl)
{
    lookups_drop(bsdl);
    names_release(&bsdl->names);
    arena_release(&bsdl->arena);
    memory_return(bsdl->kept_texts);
    memory_return(bsdl);
}

// Only the links are ours. The strings are used during the reading alone.
static GSList *copy_package_dirs(Bsdl *bsdl, const GSList *dirs)
{
    List copy = {};
    for (const char *dir : items<char>(dirs))
        copy = model_append(bsdl, copy, dir);
    return copy.head;
}

// A caller's text may be longer than the arena's reserve.
static const char *copy_text(Bsdl *bsdl, const char *text)
{
    const size_t size = text ? std::strlen(text) + 1 : 0;
    auto *copy = text ? arena_array<char>(&bsdl->arena, size) : nullptr;
    return copy ? static_cast<const char *>(std::memcpy(copy, text, size)) : nullptr;
}

static Bsdl *new_handle(const char *file_name, const char *package, const GSList *package_dirs,
                        uint32_t flags, BsdlContext *context)
{
    auto *bsdl = static_cast<Bsdl *>(memory_request(sizeof(Bsdl)));
    if (!bsdl)
        return nullptr;
    if (!arena_start(&bsdl->arena)) {
        discard(bsdl);
        return nullptr;
    }
    bsdl->file_name = copy_text(bsdl, file_name);
    bsdl->default_package = copy_text(bsdl, package);
    if (bsdl->arena.failed) {
        discard(bsdl);
        return nullptr;
    }
    if (!(flags & BSDL_FLAG_NO_PACKAGE_DIRS))
        bsdl->package_dirs = copy_package_dirs(bsdl, package_dirs);
    bsdl->strict = (flags & BSDL_FLAG_STRICT) != 0;
    bsdl->fast_read = (flags & BSDL_FLAG_FAST_READ) != 0;
    bsdl->context = context;
    return bsdl;
}

static void new_data(Bsdl *bsdl)
{
    bsdl->data = model_new<BsdlData>(bsdl);
    bsdl->data->scan_port = model_new<ScanPorts>(bsdl);
    bsdl->data->instruction_register = model_new<InstructionRegister>(bsdl);
    bsdl->data->id_registers = model_new<OptionalRegisters>(bsdl);
    bsdl->prg = model_new<PrgData>(bsdl);
}

// Opens and parses the file. False when the caller gets no handle.
static bool read_file(Bsdl *bsdl, ScanState *reading)
{
    if (!bsdl->file_name) {
        parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "no-file", "No files specified");
        return false;
    }
    if (!reading_start(bsdl, reading)) {
        if (!bsdl->arena.failed)
            parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "file-not-opened", "Could not open file '%s'",
                          bsdl->file_name);
        return false;
    }
    const InputFile *file = &reading->files[0];
    if (!names_start(&bsdl->names, &bsdl->arena,
                     static_cast<size_t>(file->end - file->text) / BYTES_PER_NAME))
        return false;
    bsdl_msg(BSDL_LEVEL_PROGRESS, 1, "Reading BSDL file '%s'", bsdl->file_name);
    bsdl_msg(BSDL_LEVEL_PHASE, 2, "BSDL syntax checks");
    bsdl->reading = reading;
    new_data(bsdl);
    int result = bsdl_yyparse(bsdl);

    if (reading->fatal) {
        parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "unreadable-input", "Bsdl reader fatal error: %s",
                      reading->fatal);
        return false;
    }
    if (reading->stopped || bsdl->arena.failed)
        return false;
    if (result != 0 && !(result == 1 && bsdl->fast_read) && bsdl->error_count != 0)
        bsdl_msg(BSDL_LEVEL_INFO, 1, "File '%s' contains %i syntax error%s", bsdl->file_name,
                 bsdl->error_count, bsdl->error_count > 1 ? "s" : "");
    if (bsdl->standards & BSDL_STANDARD_BIT_PRG_2001)
        bsdl->data->component_name = bsdl->prg->design_name;
    return bsdl->data->component_name != nullptr;
}

Bsdl *read_source(const SourceTexts *source, const char *file_name, const char *package,
                  const GSList *package_dirs, uint32_t flags, BsdlContext *context)
{
    Bsdl *bsdl = new_handle(file_name, package, package_dirs, flags, context);
    if (!bsdl)
        return nullptr;
    reader_state.context = context;
    reader_state.has_read = true;
    bool kept = false;
    if (context) {
        const Call call(bsdl);
        ScanState reading = {.source = source};
        kept = read_file(bsdl, &reading);
        reading_end(&reading);
        bsdl->reading = nullptr;
    }
    // The strings of the caller's list are not used any more.
    bsdl->package_dirs = nullptr;
    if (kept)
        return bsdl;
    discard(bsdl);
    return nullptr;
}

Bsdl *readBsdl(const char *file_name, const char *package, GSList *package_dirs, uint32_t flags,
               BsdlContext *context)
{
    return read_source(nullptr, file_name, package, package_dirs, flags, context);
}

Bsdl *readBsdlText(const char *text, size_t length, const char *file_name, const char *package,
                   GSList *package_dirs, uint32_t flags, BsdlContext *context,
                   const BsdlPackageText *packages, size_t package_count)
{
    if (!text && length)
        return nullptr;
    const SourceTexts source = {.text = {text ? text : "", length},
                                .packages = {packages, packages ? package_count : 0}};
    return read_source(&source, file_name, package, package_dirs, flags, context);
}

// freeBsdl leaves these three texts alone: a host may still ask for the name of the file.
static void keep_texts(Bsdl *bsdl)
{
    const char **texts[] = {&bsdl->file_name, &bsdl->default_package, &bsdl->ebst_file_name};
    size_t size = 0;
    for (const char **text : texts)
        size += *text ? std::strlen(*text) + 1 : 0;
    char *at = bsdl->kept_texts = static_cast<char *>(memory_request(size + 1));
    for (const char **text : texts) {
        if (!*text)
            continue;
        size_t length = std::strlen(*text) + 1;
        *text = at ? static_cast<char *>(std::memcpy(at, *text, length)) : nullptr;
        if (at)
            at += length;
    }
}

static void free_contents(Bsdl *h)
{
    lookups_drop(h);
    keep_texts(h);
    names_release(&h->names);
    arena_release(&h->arena);
    h->lookups = nullptr;
    h->data = nullptr;
    h->prg = nullptr;
    h->ebst = nullptr;
    // The outer record stays by contract; the chain lets leak checkers see it.
    const std::lock_guard guard(released_handles.lock);
    h->released = released_handles.first;
    released_handles.first = h;
}

int32_t freeBsdl(Bsdl *h)
{
    if (!h || !h->data || h->give_back)
        return 1;
    const bool had_ebst = h->ebst != nullptr;
    if (h->in_call)
        h->give_back = FREE;
    else
        free_contents(h);
    return had_ebst ? 0 : 1;
}

static void forget_released(const Bsdl *h)
{
    const std::lock_guard guard(released_handles.lock);
    for (Bsdl **link = &released_handles.first; *link; link = &(*link)->released) {
        if (*link == h) {
            *link = h->released;
            return;
        }
    }
}

void bsdlRelease(Bsdl *h)
{
    if (!h)
        return;
    if (h->in_call) {
        h->give_back = RELEASE;
        return;
    }
    forget_released(h);
    discard(h);
}

void give_back_if_asked(Bsdl *bsdl)
{
    switch (std::exchange(bsdl->give_back, KEEP)) {
    case KEEP:
        break;
    case FREE:
        free_contents(bsdl);
        break;
    case RELEASE:
        bsdlRelease(bsdl);
        break;
    }
}

int32_t bsdlGetNumErrors(Bsdl *h) { return h ? h->error_count : -1; }

// --------------------------------------------------------------------- actions of the whole file

void description_read(Bsdl *bsdl)
{
    bsdl->reading->complete = true;
    bsdl_msg(BSDL_LEVEL_INFO, 2, "BSDL syntax %s", bsdl->error_count ? "failed" : "ok");
}

void prg_data_read(Bsdl *bsdl)
{
    bsdl->reading->complete = true;
    bsdl_msg(BSDL_LEVEL_INFO, 2, "PPC/PRG syntax %s",
             bsdl->error_count ? "failed " /* as is */ : "ok");
}

const char *pattern_of_32_bits(Bsdl *bsdl, const char *pattern)
{
    if (std::strlen(pattern) != 32)
        parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "pattern-not-32-bits",
                      "32 bit pattern length required on line %d", scan_line(bsdl));
    return pattern;
}
