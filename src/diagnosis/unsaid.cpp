// What the messages of a reading leave to be understood.

#include "diagnosis/unsaid.h"

#include "base/files.h"
#include "diagnosis/checked_text.h"
#include "scan/package_search.h"

#include <algorithm>
#include <utility>

static bool is_error(const Said &said) { return said.level == BSDL_LEVEL_ERROR; }

// "... has errors" repeats what the errors before it have said, except where a check fails without
// a word, for want of a statement for example. Statements that a syntax error has swallowed are
// wanting too, but that has been said.
static void name_failed_checks(CheckedText &checked)
{
    bool said_in_check = checked.bsdl && bsdlGetNumErrors(checked.bsdl.get()) > 0;
    bool said_in_text = said_in_check;
    const bool all_said = said_in_text;
    for (Said &said : checked.messages) {
        if (!is_error(said))
            continue;
        const bool verdict = said.rule.empty();
        const bool of_one_check = verdict && said.text.starts_with('\t');
        if (verdict && !(of_one_check ? said_in_check : said_in_text))
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
                                    .searched = {}});
}

// The folder of "\tTrying '%s'"; false for another message.
static bool tried_folder(const Said &said, std::string &folder)
{
    constexpr std::string_view BEFORE = "\tTrying '";
    if (!said.text.starts_with(BEFORE) || !said.text.ends_with('\''))
        return false;
    folder = said.text.substr(BEFORE.size(), said.text.size() - BEFORE.size() - 1);
    const size_t slash = folder.find_last_of(PATH_SEPARATOR);
    folder.erase(slash == std::string::npos ? 0 : std::max<size_t>(slash, 1));
    return true;
}

static void name_searched_folders(std::vector<Said> &messages)
{
    std::vector<std::string> searched;
    const auto add = [&](const std::string &folder) {
        if (std::find(searched.begin(), searched.end(), folder) == searched.end())
            searched.push_back(folder);
    };
    for (Said &said : messages) {
        if (std::string folder; tried_folder(said, folder)) {
            add(folder);
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
