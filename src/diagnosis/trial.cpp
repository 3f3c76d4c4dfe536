#include "diagnosis/trial.h"

#include "frame/reader.h"

#include <algorithm>
#include <cstring>
#include <new>

void Work::spend(size_t bytes)
{
    if (cancelled && !was_cancelled)
        was_cancelled = cancelled(cancel_data) != 0;
    bytes_left -= std::min(bytes_left, bytes);
}

bool is_syntax_mistake(const char *rule)
{
    static constexpr const char *RULES[] = {
        "syntax-error",      "component-name-mismatch", "unreadable-input",    "standard-unknown",
        "register-idcode",   "isc-statement-order",     "package-needs-1994",  "package-needs-2001",
        "package-not-found", "package-missing",         "package-end-mismatch"};
    return rule && std::any_of(std::begin(RULES), std::end(RULES),
                               [&](const char *each) { return std::strcmp(each, rule) == 0; });
}

namespace
{

struct Watch {
    std::string_view text;
    const std::string *file_name;
    const std::vector<TextRange> *aside;
    Trial trial;
    bool over = false; // the reading is to stop
    bool out_of_memory = false;
};

} // namespace

static size_t offset_in(std::string_view text, int32_t line, int32_t column)
{
    size_t at = 0;
    for (int32_t i = 1; i < line; i++) {
        at = text.find_first_of("\r\n", at);
        if (at == std::string_view::npos)
            return text.size();
        at += text.substr(at, 2) == "\r\n" ? 2 : 1;
    }
    return std::min(text.size(), at + static_cast<size_t>(std::max(column, 1) - 1));
}

// Called from the library, which knows no exceptions.
static void watch_for_mistake(void *data, BsdlMessage *message) noexcept
{
    auto *watch = static_cast<Watch *>(data);
    if (watch->over || message->level != BSDL_LEVEL_ERROR || !is_syntax_mistake(bsdlMessageRule()))
        return;
    try {
        Said said = said_now(message);
        if (said.file != *watch->file_name)
            return;
        const size_t at = offset_in(watch->text, said.line, said.column);
        for (const TextRange &range : *watch->aside)
            if (at >= range.begin && at < range.end)
                return;
        watch->trial.far = at;
        watch->trial.far_end = std::max(at, offset_in(watch->text, said.end_line, said.end_column));
        watch->trial.first = std::move(said);
    } catch (const std::bad_alloc &) {
        watch->out_of_memory = true;
    }
    watch->over = true;
}

Trial read_to_first_mistake(std::string_view text, const ReadingOptions &options,
                            const std::vector<TextRange> &aside, Work *work)
{
    Watch watch = {.text = text, .file_name = &options.file_name, .aside = &aside};
    BsdlContext context = {watch_for_mistake, &watch, 1};
    const SourceTexts source = {.text = text, .packages = options.packages, .over = &watch.over};
    bsdlRelease(read_with(source, options, &context));
    if (watch.out_of_memory)
        throw std::bad_alloc();
    work->spend(std::min(watch.trial.far, text.size()));
    return std::move(watch.trial);
}
