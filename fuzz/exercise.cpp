#include "ask.h"
#include "targets.h"

#include "frame/reader_state.h"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

// --------------------------------------------------------------------------------- files in memory

MemoryFile::MemoryFile(const char *name)
    : handle_(memfd_create(name, MFD_CLOEXEC)), path_("/proc/self/fd/" + std::to_string(handle_))
{
    if (handle_ < 0)
        std::abort();
}

void MemoryFile::write(const void *data, size_t size)
{
    if (ftruncate(handle_, 0) != 0 || pwrite(handle_, data, size, 0) != static_cast<ssize_t>(size))
        std::abort();
}

// ------------------------------------------------------------------------- messages, and their end

static bool end_was_announced;

static void sink(void *, BsdlMessage *message)
{
    const std::string_view text = message->text;
    volatile size_t seen = text.size();
    if (const char *file = bsdlMessageFile())
        seen = std::strlen(file);
    if (const char *rule = bsdlMessageRule())
        seen = std::strlen(rule);
    if (message->level < 0 || message->level > 4 || seen > (1u << 30))
        std::abort();
    // A place has both ends in their order, or none of them.
    const int32_t line = bsdlMessageLine();
    const int32_t lines = bsdlMessageEndLine() - line;
    const bool in_order =
        lines > 0 || (lines == 0 && bsdlMessageColumn() <= bsdlMessageEndColumn());
    if (line < 0 || !in_order || (line > 0) != (bsdlMessageColumn() > 0))
        std::abort();
    end_was_announced = text == "Includes nested too deep" || text == "Memory error";
}

BsdlContext *fuzz_context()
{
    static BsdlContext context = {sink, nullptr, 4};
    return &context;
}

// -------------------------------------------------------------------------- exits of the library

extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*allocated)(const volatile void *,
                                                                           size_t),
                                                         void (*freed)(const volatile void *))
    __attribute__((weak));
extern "C" [[noreturn]] void __real_exit(int status);

static bool guarded;
static jmp_buf way_back;
// What a step that does not return leaves behind; given back here, since it runs within a process
// that goes on.
static const volatile void *taken[4096];
static size_t taken_count;

static void note_taken(const volatile void *memory, size_t)
{
    if (guarded && taken_count < std::size(taken))
        taken[taken_count++] = memory;
}

static void note_given_back(const volatile void *memory)
{
    if (!guarded)
        return;
    for (size_t i = taken_count; i--;) {
        if (taken[i] == memory) {
            taken[i] = taken[--taken_count];
            return;
        }
    }
}

// The linker leads all calls of exit() here.
extern "C" void __wrap_exit(int status)
{
    if (!guarded)
        __real_exit(status);
    if (!end_was_announced) {
        std::fprintf(stderr, "the library ended the process with status %d\n", status);
        std::abort();
    }
    longjmp(way_back, 1);
}

bool survives(void (*step)(void *), void *data)
{
    static const bool installed =
        __sanitizer_install_malloc_and_free_hooks &&
        __sanitizer_install_malloc_and_free_hooks(note_taken, note_given_back);
    taken_count = 0;
    if (setjmp(way_back) != 0) {
        guarded = false;
        reader_state.call = nullptr; // its end was jumped over
        if (installed)
            while (taken_count)
                std::free(const_cast<void *>(taken[--taken_count]));
        return false;
    }
    guarded = true;
    step(data);
    guarded = false;
    return true;
}

// ------------------------------------------------------------------------------------------- a run

uint32_t fingerprint(const uint8_t *data, size_t size)
{
    uint32_t value = 2166136261u;
    for (size_t i = 0; i < size; i++)
        value = (value ^ data[i]) * 16777619u;
    return value ^ value >> 15;
}

namespace
{

struct Read {
    const char *path;
    const char *package;
    GSList *dirs;
    uint32_t flags;
    Bsdl *handle;
};

} // namespace

static void read_step(void *data)
{
    auto *read = static_cast<Read *>(data);
    read->handle = readBsdl(read->path, read->package, read->dirs, read->flags, fuzz_context());
}

static void write_ebst(Bsdl *h)
{
    static const MemoryFile written("ebst");
    bsdlSetEbstFile(h, written.path().c_str());
    bsdlGenEbst(h);
    ask_everything(h);
    const int32_t result = bsdlCreateEbst(h);
    if (result != BSDL_RESULT_OK && result != BSDL_RESULT_MISSING)
        std::abort();
    bsdlCreateEbst(h);
}

void exercise(const char *path, GSList *package_dirs, uint32_t steps, uint32_t variant)
{
    constexpr const char *PACKAGES[] = {nullptr, nullptr, "PKG", ""};
    Read read = {path, PACKAGES[variant >> 8 & 3], package_dirs, 0, nullptr};
    if (variant & 1)
        read.flags |= BSDL_FLAG_STRICT;
    if ((variant & 0xF0) == 0x50)
        read.flags |= BSDL_FLAG_FAST_READ;
    if (!survives(read_step, &read) || !read.handle)
        return;
    Bsdl *h = read.handle;
    bsdlGetNumErrors(h);
    ask_everything(h);
    if (steps & CHECK)
        bsdl_check(h);
    if (steps & CHECK_ISC)
        bsdl_check_isc(h);
    if (steps & CHECK_AIO)
        bsdl_check_aio(h);
    if (steps & CHECK_PRG)
        bsdl_check_prg(h);
    ask_everything(h);
    if (!(variant & 2) || !(steps & CHECK_PRG))
        write_ebst(h);
    if (variant & 4) {
        freeBsdl(h);
        ask_everything(h);
    }
    bsdlRelease(h);
}
