#include "frame/messages.h"

#include "frame/call.h"
#include "frame/model.h"
#include "frame/reader_state.h"
#include "scan/keywords.h"
#include "scan/scanner.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <utility>

namespace
{

constexpr size_t LONGEST_TEXT = 10000;

} // namespace

static const BsdlContext *current_context()
{
    return reader_state.call ? reader_state.call->context : reader_state.context;
}

static const SourceMap *current_sources()
{
    const Bsdl *bsdl = reader_state.call ? reader_state.call->bsdl : nullptr;
    return bsdl ? &bsdl->sources : nullptr;
}

bool message_wanted(uint32_t verbosity)
{
    const BsdlContext *context = current_context();
    return context && context->message_sink && verbosity <= context->verbosity;
}

// The one way out. A longer text is cut at LONGEST_TEXT characters.
static void send(int32_t level, uint32_t verbosity, const Rule &rule, const char *format,
                 va_list arguments)
{
    if (!format || !message_wanted(verbosity))
        return;
    char text[LONGEST_TEXT + 1];
    std::vsnprintf(text, sizeof text, format, arguments);
    BsdlMessage message = {
        .level = level, .verbosity = verbosity, .code = 0, .text = text, .formatted = 1};

    // A sink may call back into the library, even for a reading of its own: the current call and
    // message come back after it.
    const BsdlContext *context = current_context();
    const SourceMap *sources = current_sources();
    Call *const call = std::exchange(reader_state.call, nullptr);
    CurrentMessage current = {
        .rule = rule.id,
        .begin = source_position(sources, rule.place.begin),
        .end = source_position(sources, std::max(rule.place.begin, rule.place.end)),
        .expected = rule.expected,
        .sums_up = rule.sums_up};
    // What begins in the description may end in a package that it uses: a place lies in one file.
    if (current.end.file != current.begin.file)
        current.end = current.begin;
    const Bsdl *bsdl = call ? call->bsdl : nullptr;
    current.file = current.begin.file || !bsdl ? current.begin.file : bsdl->file_name;
    const CurrentMessage outer = std::exchange(reader_state.message, current);
    context->message_sink(context->sink_data, &message);
    reader_state.message = outer;
    reader_state.call = call;
}

Place token_place(uint32_t offset, uint32_t behind)
{
    return source_token(current_sources(), offset, behind);
}

Place tokens_place(uint32_t offset, uint32_t first, uint32_t last)
{
    return place_through(token_place(offset, first), token_place(offset, last));
}

Place cursor_place(TokenCursor *cursor)
{
    const Place place = token_place(cursor->at, cursor->behind);
    if (has_place(place))
        *cursor = {place.begin, 0};
    return place;
}

Place entity_place()
{
    const SourceMap *sources = current_sources();
    return sources ? sources->entity : Place{};
}

static Rule placed(Rule rule)
{
    rule.place = place_or(rule.place, entity_place());
    return rule;
}

void bsdl_msg(int32_t level, uint32_t verbosity, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    send(level, verbosity, {}, format, arguments);
    va_end(arguments);
}

int32_t rule_message(int32_t level, uint32_t verbosity, Rule rule, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    send(level, verbosity, rule, format, arguments);
    va_end(arguments);
    return level == BSDL_LEVEL_ERROR ? BSDL_RESULT_FAILED : BSDL_RESULT_OK;
}

int32_t rule_error(Rule rule, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    send(BSDL_LEVEL_ERROR, 2, placed(rule), format, arguments);
    va_end(arguments);
    return BSDL_RESULT_FAILED;
}

int32_t rule_warning(Rule rule, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    send(BSDL_LEVEL_WARNING, 2, placed(rule), format, arguments);
    va_end(arguments);
    return BSDL_RESULT_OK;
}

int32_t rule_strict(const Bsdl *bsdl, Rule rule, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    send(bsdl->strict ? BSDL_LEVEL_ERROR : BSDL_LEVEL_WARNING, 2, placed(rule), format, arguments);
    va_end(arguments);
    return bsdl->strict ? BSDL_RESULT_FAILED : BSDL_RESULT_OK;
}

// ----------------------------------------------------------------------------------- while parsing

static Rule rule_at_scan_place(const Bsdl *bsdl, const char *rule)
{
    return {rule, scan_place(bsdl)};
}

void statement_passed(Bsdl *bsdl, const char *text)
{
    rule_message(BSDL_LEVEL_INFO, 3, rule_at_scan_place(bsdl, nullptr), "%s", text);
    release_strings(bsdl);
}

void statement_absent(Bsdl *bsdl, const char *text)
{
    rule_message(BSDL_LEVEL_INFO, 4, Rule{nullptr, bsdl->sources.entity}, "%s", text);
}

void statement_skipped(Bsdl *bsdl, const char *text)
{
    rule_message(BSDL_LEVEL_ERROR, 1, Rule{"statement-skipped", scan_place_of_statement(bsdl)},
                 "%s", text);
    drop_unread_strings(bsdl);
    bsdl->scan_mode = SCAN_MODE_NONE;
}

static void count_error(Bsdl *bsdl)
{
    bsdl->error_count++;
    if (reading_is_over(bsdl))
        end_reading(bsdl, 0);
}

void syntax_error(Bsdl *bsdl, const Rule &rule, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    send(BSDL_LEVEL_ERROR, 1, rule, format, arguments);
    va_end(arguments);
    count_error(bsdl);
}

bool parse_refused(Bsdl *bsdl, const char *rule, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    send(BSDL_LEVEL_ERROR, 1, rule_at_scan_place(bsdl, rule), format, arguments);
    va_end(arguments);
    count_error(bsdl);
    return false;
}

void parse_message(Bsdl *bsdl, int32_t level, uint32_t verbosity, const char *rule,
                   const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    send(level, verbosity, rule_at_scan_place(bsdl, rule), format, arguments);
    va_end(arguments);
}

int32_t bsdlMessageLine(void) { return reader_state.message.begin.line; }

int32_t bsdlMessageColumn(void) { return reader_state.message.begin.column; }

int32_t bsdlMessageEndLine(void) { return reader_state.message.end.line; }

int32_t bsdlMessageEndColumn(void) { return reader_state.message.end.column; }

const BsdlExpected *bsdlMessageExpected(int32_t *count)
{
    ExpectedTokens *expected = reader_state.message.expected;
    for (int32_t i = 0; expected && i < expected->count; i++)
        expected->tokens[i].text = token_text(expected->tokens[i].name);
    if (count)
        *count = expected ? expected->count : 0;
    return expected ? expected->tokens : nullptr;
}

const char *bsdlMessageFile(void) { return reader_state.message.file; }

const char *bsdlMessageRule(void) { return reader_state.message.rule; }
