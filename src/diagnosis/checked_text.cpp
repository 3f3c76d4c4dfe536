#include "diagnosis/checked_text.h"

#include "aio/aio.h"
#include "frame/model.h"
#include "isc/isc.h"

#include <new>

namespace
{

// Tries of the package search stand at 4; more is not said.
constexpr uint32_t ALL_MESSAGES = 4;

struct Collector {
    std::vector<Said> messages;
    bool out_of_memory = false;
};

} // namespace

// Called from the library, which knows no exceptions.
static void collect(void *data, BsdlMessage *message) noexcept
{
    auto *collector = static_cast<Collector *>(data);
    const char *rule = bsdlMessageRule();
    const char *file = bsdlMessageFile();
    try {
        collector->messages.push_back({.level = message->level,
                                       .verbosity = message->verbosity,
                                       .rule = rule ? rule : "",
                                       .file = file ? file : "",
                                       .line = bsdlMessageLine(),
                                       .column = 0,
                                       .end_line = 0,
                                       .end_column = 0,
                                       .text = message->text});
    } catch (const std::bad_alloc &) {
        collector->out_of_memory = true;
    }
}

static uint32_t run_checks(Bsdl *bsdl)
{
    if (bsdlIsPrg(bsdl)) {
        bsdl_check_prg(bsdl);
        return BSDL_CHECKED_PRG;
    }
    uint32_t checked = BSDL_CHECKED_GENERAL;
    bsdl_check(bsdl);
    if (bsdlIs1532(bsdl) || bsdl->data->isc) {
        checked |= BSDL_CHECKED_ISC;
        bsdl_check_isc(bsdl);
    }
    if (bsdlIsAio(bsdl) || bsdl->data->aio) {
        checked |= BSDL_CHECKED_AIO;
        bsdl_check_aio(bsdl);
    }
    return checked;
}

CheckedText check_text(std::string_view text, const ReadingOptions &options)
{
    Collector collector;
    BsdlContext context = {collect, &collector, ALL_MESSAGES};
    std::vector<GSList> dirs(options.package_dirs.size());
    for (size_t i = 0; i < dirs.size(); i++)
        dirs[i] = {.data = const_cast<char *>(options.package_dirs[i].c_str()),
                   .next = i + 1 < dirs.size() ? &dirs[i + 1] : nullptr};

    CheckedText result;
    result.bsdl.reset(readBsdlText(text.data(), text.size(), options.file_name.c_str(),
                                   options.package, dirs.data(), options.flags, &context,
                                   options.packages.data(), options.packages.size()));
    if (result.bsdl)
        result.checked = run_checks(result.bsdl.get());
    if (collector.out_of_memory)
        throw std::bad_alloc();
    result.messages = std::move(collector.messages);
    return result;
}
