#include "frame/messages.h"

#include "frame/call.h"
#include "frame/model.h"
#include "frame/reader_state.h"
#include "scan/scanner.h"

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
    Call *const call = std::exchange(reader_state.call, nullptr);
    const Rule outer = std::exchange(reader_state.message, rule);
    if (!rule.file && call)
        reader_state.message.file = call->bsdl->file_name;
    context->message_sink(context->sink_data, &message);
    reader_state.message = outer;
    reader_state.call = call;
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
    send(BSDL_LEVEL_ERROR, 2, rule, format, arguments);
    va_end(arguments);
    return BSDL_RESULT_FAILED;
}

int32_t rule_warning(Rule rule, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    send(BSDL_LEVEL_WARNING, 2, rule, format, arguments);
    va_end(arguments);
    return BSDL_RESULT_OK;
}

int32_t rule_strict(const Bsdl *bsdl, Rule rule, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    send(bsdl->strict ? BSDL_LEVEL_ERROR : BSDL_LEVEL_WARNING, 2, rule, format, arguments);
    va_end(arguments);
    return bsdl->strict ? BSDL_RESULT_FAILED : BSDL_RESULT_OK;
}

// ----------------------------------------------------------------------------------- while parsing

static Rule at_hand(const Bsdl *bsdl, const char *rule)
{
    return {rule, scan_source_line(bsdl), scan_file(bsdl)};
}

void statement_passed(Bsdl *bsdl, const char *text)
{
    rule_message(BSDL_LEVEL_INFO, 3, at_hand(bsdl, nullptr), "%s", text);
    release_strings(bsdl);
}

void statement_absent(Bsdl *bsdl, const char *text)
{
    rule_message(BSDL_LEVEL_INFO, 4, at_hand(bsdl, nullptr), "%s", text);
}

void statement_skipped(Bsdl *bsdl, const char *text)
{
    rule_message(BSDL_LEVEL_ERROR, 1, at_hand(bsdl, "statement-skipped"), "%s", text);
    drop_unread_strings(bsdl);
    bsdl->scan_mode = SCAN_MODE_NONE;
}

bool parse_refused(Bsdl *bsdl, const char *rule, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    send(BSDL_LEVEL_ERROR, 1, at_hand(bsdl, rule), format, arguments);
    va_end(arguments);
    bsdl->error_count++;
    return false;
}

void parse_message(Bsdl *bsdl, int32_t level, uint32_t verbosity, const char *rule,
                   const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    send(level, verbosity, at_hand(bsdl, rule), format, arguments);
    va_end(arguments);
}

int32_t bsdlMessageLine(void) { return reader_state.message.line; }

const char *bsdlMessageFile(void) { return reader_state.message.file; }

const char *bsdlMessageRule(void) { return reader_state.message.id; }
