#include "report/page.h"

#include "console.h"
#include "report/template.h"

#include <glib.h>

#include <functional>
#include <utility>

// As a policy names what it allows.
static std::string hash_of(std::string_view text)
{
    GChecksum *sum = g_checksum_new(G_CHECKSUM_SHA256);
    g_checksum_update(sum, reinterpret_cast<const guchar *>(text.data()),
                      static_cast<gssize>(text.size()));
    guint8 digest[32];
    gsize length = sizeof digest;
    g_checksum_get_digest(sum, digest, &length);
    g_checksum_free(sum);
    gchar *base64 = g_base64_encode(digest, length);
    const std::string hash = std::string("'sha256-") + base64 + "'";
    g_free(base64);
    return hash;
}

static std::string policy()
{
    return "default-src 'none'; script-src " + hash_of(REPORT_SCRIPT) + "; style-src " +
           hash_of(REPORT_STYLE) + "; base-uri 'none'; form-action 'none'";
}

static std::string html_text(std::string_view text)
{
    std::string result;
    for (const char c : escaped(text)) {
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else
            result += c;
    }
    return result;
}

// In ASCII. Only in texts can a "<" stand: escaped, none of them ends the element.
static std::string data_text(const Json &data)
{
    const std::string json = data.dump(-1, ' ', true, Json::error_handler_t::replace);
    std::string result;
    result.reserve(json.size() + json.size() / 64);
    for (const char c : json) {
        if (c == '<')
            result += "\\u003c";
        else
            result += c;
    }
    return result;
}

std::string page_of(std::string_view title, const Json &data)
{
    const std::pair<std::string_view, std::function<std::string()>> parts[] = {
        {"@POLICY@", policy},
        {"@TITLE@", [&] { return html_text(title); }},
        {"@STYLE@", [] { return std::string(REPORT_STYLE); }},
        {"@DATA@", [&] { return data_text(data); }},
        {"@SCRIPT@", [] { return std::string(REPORT_SCRIPT); }},
    };
    std::string page;
    std::string_view rest = REPORT_HTML;
    for (const auto &[mark, text] : parts) {
        const size_t at = rest.find(mark);
        page += rest.substr(0, at);
        page += text();
        rest.remove_prefix(at + mark.size());
    }
    page += rest;
    return page;
}
