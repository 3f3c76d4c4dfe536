// What the messages of a reading leave to be understood.

#include "diagnosis/unsaid.h"

#include "base/files.h"
#include "diagnosis/checked_text.h"
#include "scan/package_search.h"

#include <algorithm>
#include <utility>

static bool is_error(const Said &said) { return said.level == BSDL_LEVEL_ERROR; }

// "... has errors" only repeats the errors before it. It becomes a finding when its check failed
// without an error of its own, for example because a statement is missing. After a syntax error it
// never does: the missing statement may be the one that could not be read, which has been reported.
static void name_failed_checks(CheckedText &checked)
{
    bool said_in_check = checked.bsdl && bsdlGetNumErrors(checked.bsdl.get()) > 0;
    bool said_in_text = said_in_check;
    const bool all_said = said_in_text;
    for (Said &said : checked.messages) {
        if (!is_error(said))
            continue;
        const bool verdict = said.rule.empty();
        if (verdict && !(said.sums_up ? said_in_text : said_in_check))
            said.rule = "check-failed";
        said_in_check = all_said || !verdict;
        said_in_text = true;
    }
    if (checked.bsdl && !checked.passed && !said_in_text)
        checked.messages.push_back({.level = BSDL_LEVEL_ERROR,
                                    .verbosity = 1,
                                    .rule = "check-failed",
                                    .file = {},
                                    .line = 0,
                                    .column = 0,
                                    .end_line = 0,
                                    .end_column = 0,
                                    .text = "The check failed",
                                    .sums_up = false,
                                    .searched = {}});
}

// The folder of the path that stands in quotes.
static std::string tried_folder(const std::string &text)
{
    const size_t quote = text.find('\'') + 1;
    std::string folder = text.substr(quote, text.rfind('\'') - quote);
    const size_t slash = folder.find_last_of(PATH_SEPARATOR);
    folder.erase(slash == std::string::npos ? 0 : std::max<size_t>(slash, 1));
    return folder;
}

static void name_searched_folders(std::vector<Said> &messages)
{
    std::vector<std::string> searched;
    const auto add = [&](const std::string &folder) {
        if (std::find(searched.begin(), searched.end(), folder) == searched.end())
            searched.push_back(folder);
    };
    for (Said &said : messages) {
        if (said.rule == "package-file-tried") {
            add(tried_folder(said.text));
            continue;
        }
        if (said.rule == "package-not-found") {
            if (char installed[LONGEST_PATH]; installed_package_folder(installed))
                add(installed);
            said.searched = std::move(searched);
        }
        searched.clear();
    }
}

void say_the_unsaid(CheckedText &checked)
{
    name_failed_checks(checked);
    name_searched_folders(checked.messages);
}
