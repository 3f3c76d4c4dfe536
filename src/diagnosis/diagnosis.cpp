// The exports of a diagnosis, and the way from a text to its findings.

#include "diagnosis/checked_text.h"
#include "frame/reader_state.h"

#include <deque>
#include <new>
#include <string>
#include <utility>
#include <vector>

struct BsdlDiagnosis {
    std::string text;
    ReadingOptions reading;
    std::vector<std::string> package_names;
    CheckedText checked;
    std::vector<BsdlFinding> findings;
    std::deque<std::vector<BsdlRelated>> related; // of the findings
    uint32_t verbosity;                           // of the messages that are findings as well
};

namespace
{

// A diagnosis is no reading of its thread: it starts as if nothing had been read, and nothing of it
// stays.
class OwnState
{
  public:
    OwnState() : outer(std::exchange(reader_state, {})) {}
    ~OwnState() { reader_state = outer; }
    OwnState(const OwnState &) = delete;
    OwnState &operator=(const OwnState &) = delete;

  private:
    const ReaderState outer;
};

} // namespace

static ReadingOptions reading_options(const char *file_name, const BsdlDiagnosisOptions &options)
{
    ReadingOptions reading = {.file_name = file_name,
                              .package = options.package,
                              .package_dirs = {},
                              .packages = {},
                              .flags = options.flags};
    for (size_t i = 0; i < options.package_dir_count; i++)
        reading.package_dirs.emplace_back(options.package_dirs[i]);
    reading.packages.assign(options.packages, options.packages + options.package_count);
    return reading;
}

static BsdlPlace place_of(const Said &said)
{
    return {said.file.c_str(), said.line, said.column, said.end_line, said.end_column};
}

static void relate_folders(BsdlDiagnosis *diagnosis, const Said &said, BsdlFinding &finding)
{
    if (said.searched.empty())
        return;
    std::vector<BsdlRelated> &related = diagnosis->related.emplace_back();
    for (const std::string &folder : said.searched)
        related.push_back({.place = {.file = folder.c_str()}, .text = "searched in this folder"});
    finding.related = related.data();
    finding.related_count = static_cast<uint32_t>(related.size());
}

static void make_findings(BsdlDiagnosis *diagnosis)
{
    const auto is_wanted = [&](const Said &said) {
        const bool tells_a_mistake = said.level <= BSDL_LEVEL_WARNING && !said.rule.empty();
        return diagnosis->verbosity ? said.verbosity <= diagnosis->verbosity : tells_a_mistake;
    };
    for (const Said &said : diagnosis->checked.messages) {
        if (!is_wanted(said))
            continue;
        BsdlFinding finding = {.severity = said.rule.empty() ? BSDL_SEVERITY_NOTE
                                           : said.level > BSDL_LEVEL_WARNING
                                               ? BSDL_SEVERITY_NOTE
                                               : said.level, // the two codes are the same
                               .rule = said.rule.c_str(),
                               .place = place_of(said),
                               .text = said.text.c_str(),
                               .because = -1,
                               .count = 1};
        relate_folders(diagnosis, said, finding);
        diagnosis->findings.push_back(finding);
    }
}

BsdlDiagnosis *bsdlDiagnose(const char *text, size_t length, const char *file_name,
                            const BsdlDiagnosisOptions *options)
{
    if ((!text && length) || !file_name)
        return nullptr;
    const OwnState own;
    try {
        auto diagnosis = std::make_unique<BsdlDiagnosis>();
        diagnosis->text.assign(text ? text : "", length);
        diagnosis->reading =
            reading_options(file_name, options ? *options : BsdlDiagnosisOptions{});
        diagnosis->checked = check_text(diagnosis->text, diagnosis->reading);
        diagnosis->verbosity = options && options->as_read ? options->verbosity : 0;
        make_findings(diagnosis.get());
        return diagnosis.release();
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

void bsdlDiagnosisRelease(BsdlDiagnosis *diagnosis) { delete diagnosis; }

uint32_t bsdlFindingCount(const BsdlDiagnosis *diagnosis)
{
    return diagnosis ? static_cast<uint32_t>(diagnosis->findings.size()) : 0;
}

const BsdlFinding *bsdlFindingAt(const BsdlDiagnosis *diagnosis, uint32_t index)
{
    return index < bsdlFindingCount(diagnosis) ? &diagnosis->findings[index] : nullptr;
}

const char *bsdlDiagnosisText(const BsdlDiagnosis *diagnosis, size_t *length)
{
    if (length)
        *length = diagnosis ? diagnosis->text.size() : 0;
    return diagnosis ? diagnosis->text.c_str() : nullptr;
}

Bsdl *bsdlDiagnosisBsdl(const BsdlDiagnosis *diagnosis)
{
    return diagnosis ? diagnosis->checked.bsdl.get() : nullptr;
}

const char *bsdlDiagnosisUnchecked(const BsdlDiagnosis *diagnosis)
{
    (void)diagnosis;
    return nullptr;
}

uint32_t bsdlDiagnosisChecked(const BsdlDiagnosis *diagnosis)
{
    return diagnosis ? diagnosis->checked.checked : 0;
}
