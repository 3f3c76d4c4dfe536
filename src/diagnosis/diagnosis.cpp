// The exports of a diagnosis.

#include "diagnosis/find.h"
#include "diagnosis/suppressions.h"
#include "diagnosis/unreadable_text.h"
#include "frame/reader_state.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <new>
#include <string>
#include <utility>
#include <vector>

struct BsdlDiagnosis {
    ReadingOptions reading;
    Found found; // holds the texts of the findings
    std::vector<BsdlFinding> findings;
    std::deque<std::vector<BsdlEdit>> edits;
    std::deque<std::vector<BsdlRelated>> related;
};

namespace
{

// About how much two seconds read; one mistake in an ordinary file takes a quarter of it at most.
constexpr size_t BYTES_OF_WORK = size_t{96} << 20;

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

// A host that was built with an older header hands in a shorter record.
static BsdlDiagnosisOptions known_options(const BsdlDiagnosisOptions *options)
{
    BsdlDiagnosisOptions known = {};
    if (options)
        std::memcpy(&known, options, std::min(options->size, sizeof known));
    return known;
}

static ReadingOptions reading_options(const char *file_name, const BsdlDiagnosisOptions &options)
{
    ReadingOptions reading = {.stand_ins = {},
                              .file_name = file_name,
                              .package = options.package,
                              .package_dirs = {},
                              .packages = {},
                              .flags = options.flags};
    for (size_t i = 0; i < options.package_dir_count; i++)
        reading.package_dirs.emplace_back(options.package_dirs[i]);
    reading.packages.assign(options.packages, options.packages + options.package_count);
    return reading;
}

static BsdlPlace exported(const FoundPlace &place)
{
    return {place.file.c_str(), place.line, place.column, place.end_line, place.end_column};
}

static const char *text_or_null(const std::string &text)
{
    return text.empty() ? nullptr : text.c_str();
}

static void export_findings(BsdlDiagnosis *diagnosis)
{
    for (const Finding &found : diagnosis->found.findings) {
        auto &edits = diagnosis->edits.emplace_back();
        for (const FindingEdit &edit : found.edits)
            edits.push_back({exported(edit.place), edit.text.c_str()});
        auto &related = diagnosis->related.emplace_back();
        for (const FindingRelated &each : found.related)
            related.push_back({exported(each.place), each.text.c_str()});
        diagnosis->findings.push_back({.severity = found.severity,
                                       .rule = found.rule.c_str(),
                                       .place = exported(found.place),
                                       .text = found.text.c_str(),
                                       .hint = text_or_null(found.hint),
                                       .fix = text_or_null(found.fix),
                                       .edits = edits.empty() ? nullptr : edits.data(),
                                       .edit_count = static_cast<uint32_t>(edits.size()),
                                       .fix_sure = found.sure,
                                       .related = related.empty() ? nullptr : related.data(),
                                       .related_count = static_cast<uint32_t>(related.size()),
                                       .because = found.because,
                                       .count = found.count,
                                       .suppressed = found.suppressed,
                                       .pin_map = text_or_null(found.pin_map),
                                       .reason = text_or_null(found.reason)});
    }
}

static bool reads_without_error(const Found &found)
{
    Bsdl *bsdl = found.checked.bsdl.get();
    return bsdl && bsdlGetNumErrors(bsdl) == 0;
}

BsdlDiagnosis *bsdlDiagnose(const char *text, size_t length, const char *file_name,
                            const BsdlDiagnosisOptions *options)
{
    if ((!text && length) || !file_name)
        return nullptr;
    const OwnState own;
    try {
        const BsdlDiagnosisOptions how = known_options(options);
        auto diagnosis = std::make_unique<BsdlDiagnosis>();
        diagnosis->reading = reading_options(file_name, how);
        const std::string_view source = {text ? text : "", length};
        Work work = {.bytes_left = BYTES_OF_WORK,
                     .cancelled = how.cancelled,
                     .cancel_data = how.cancel_data};
        diagnosis->found = how.as_read ? found_as_read(source, diagnosis->reading, how.verbosity)
                                       : find(source, &diagnosis->reading, &work);
        if (work.was_cancelled)
            return nullptr;
        Found &found = diagnosis->found;
        if (!how.as_read)
            explain_unreadable(source, &found);
        if (!how.as_read || how.comments) {
            const bool all_looked_at =
                how.as_read ? reads_without_error(found) : found.unchecked.empty();
            suppress(source, diagnosis->reading.file_name, all_looked_at, &found.findings);
        }
        export_findings(diagnosis.get());
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
        *length = diagnosis ? diagnosis->found.text.size() : 0;
    return diagnosis ? diagnosis->found.text.c_str() : nullptr;
}

Bsdl *bsdlDiagnosisBsdl(const BsdlDiagnosis *diagnosis)
{
    return diagnosis ? diagnosis->found.checked.bsdl.get() : nullptr;
}

const char *bsdlDiagnosisUnchecked(const BsdlDiagnosis *diagnosis)
{
    return diagnosis ? text_or_null(diagnosis->found.unchecked) : nullptr;
}

uint32_t bsdlDiagnosisChecked(const BsdlDiagnosis *diagnosis)
{
    return diagnosis ? diagnosis->found.checked.checked : 0;
}
