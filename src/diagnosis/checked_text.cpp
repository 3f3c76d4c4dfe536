#include "diagnosis/checked_text.h"

#include "aio/aio.h"
#include "diagnosis/unsaid.h"
#include "frame/model.h"
#include "frame/reader.h"
#include "frame/reader_state.h"
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

Said said_now(const BsdlMessage *message)
{
    const char *rule = bsdlMessageRule();
    const char *file = bsdlMessageFile();
    return {.level = message->level,
            .verbosity = message->verbosity,
            .rule = rule ? rule : "",
            .file = file ? file : "",
            .line = bsdlMessageLine(),
            .column = bsdlMessageColumn(),
            .end_line = bsdlMessageEndLine(),
            .end_column = bsdlMessageEndColumn(),
            .text = message->text,
            .sums_up = reader_state.message.sums_up,
            .searched = {},
            .pin_map = {}};
}

// Called from the library, which knows no exceptions.
static void collect(void *data, BsdlMessage *message) noexcept
{
    auto *collector = static_cast<Collector *>(data);
    try {
        collector->messages.push_back(said_now(message));
    } catch (const std::bad_alloc &) {
        collector->out_of_memory = true;
    }
}

static void run_checks(CheckedText &result)
{
    Bsdl *bsdl = result.bsdl.get();
    result.passed = bsdlGetNumErrors(bsdl) == 0;
    const auto run = [&](uint32_t bit, int32_t (*check)(Bsdl *)) {
        result.checked |= bit;
        result.passed &= check(bsdl) == BSDL_RESULT_OK;
    };
    if (bsdlIsPrg(bsdl)) {
        run(BSDL_CHECKED_PRG, bsdl_check_prg);
        return;
    }
    run(BSDL_CHECKED_GENERAL, bsdl_check);
    if (bsdl->fast_read)
        return;
    if (bsdlIs1532(bsdl) || bsdl->data->isc)
        run(BSDL_CHECKED_ISC, bsdl_check_isc);
    if (bsdlIsAio(bsdl) || bsdl->data->aio)
        run(BSDL_CHECKED_AIO, bsdl_check_aio);
}

Bsdl *read_with(const SourceTexts &source, const ReadingOptions &options, BsdlContext *context)
{
    std::vector<GSList> dirs(options.package_dirs.size());
    for (size_t i = 0; i < dirs.size(); i++)
        dirs[i] = {.data = const_cast<char *>(options.package_dirs[i].c_str()),
                   .next = i + 1 < dirs.size() ? &dirs[i + 1] : nullptr};
    return read_source(&source, options.file_name.c_str(), options.package, dirs.data(),
                       options.flags, context);
}

CheckedText check_text(std::string_view text, const ReadingOptions &options)
{
    Collector collector;
    BsdlContext context = {collect, &collector, ALL_MESSAGES};
    CheckedText result;
    result.bsdl.reset(read_with({.text = text, .packages = options.packages}, options, &context));
    if (result.bsdl) {
        run_checks(result);
        // Queries may run a check again, when the collector is gone.
        static BsdlContext nobody = {nullptr, nullptr, 0};
        result.bsdl->context = &nobody;
    }
    if (collector.out_of_memory)
        throw std::bad_alloc();
    result.messages = std::move(collector.messages);
    say_the_unsaid(result);
    return result;
}
