#include "findings.h"

#include "values.h"

namespace
{

const char *severity_word(int32_t severity)
{
    return severity == BSDL_SEVERITY_ERROR     ? "error"
           : severity == BSDL_SEVERITY_WARNING ? "warning"
           : severity == BSDL_SEVERITY_NOTE    ? "note"
                                               : nullptr;
}

struct FindingRecords {
    Codes severity{"Severity", severity_word};
    Record<5> place{"Place"};
    Record<2> edit{"Edit"};
    Record<2> related{"Related"};
    Record<14> finding{"Finding"};
};

} // namespace

static const FindingRecords &records()
{
    static const FindingRecords instance;
    return instance;
}

void load_finding_types() { records(); }

static py::object place_value(const BsdlPlace &place)
{
    return records().place(text(place.file), number(place.line), number(place.column),
                           number(place.end_line), number(place.end_column));
}

static py::object finding_value(const BsdlFinding &finding, const py::object &because)
{
    Rows edits;
    for (uint32_t i = 0; i < finding.edit_count; i++)
        edits.add(records().edit(place_value(finding.edits[i].place), text(finding.edits[i].text)));
    Rows related;
    for (uint32_t i = 0; i < finding.related_count; i++)
        related.add(records().related(place_value(finding.related[i].place),
                                      text(finding.related[i].text)));
    return records().finding(
        records().severity[finding.severity], text(finding.rule), place_value(finding.place),
        text(finding.text), text(finding.hint), text(finding.fix), edits.tuple(),
        truth(finding.fix_sure != 0), related.tuple(), because, number(finding.count),
        truth(finding.suppressed != 0), text(finding.pin_map), text(finding.reason));
}

// A finding holds the one that it follows from, which may stand after it. So all are made whose
// reason is there, until no more can be.
py::object findings_of(const BsdlDiagnosis *diagnosis)
{
    const uint32_t count = bsdlFindingCount(diagnosis);
    std::vector<py::object> made(count);
    for (bool more = true; more;) {
        more = false;
        for (uint32_t i = 0; i < count; i++) {
            const BsdlFinding &finding = *bsdlFindingAt(diagnosis, i);
            const bool has_reason =
                finding.because >= 0 && static_cast<uint32_t>(finding.because) < count;
            const py::object because =
                has_reason ? made[static_cast<size_t>(finding.because)] : py::none();
            if (made[i] || !because)
                continue;
            made[i] = finding_value(finding, because);
            more = true;
        }
    }
    Rows findings;
    for (py::object &each : made)
        if (each)
            findings.add(std::move(each));
    return findings.tuple();
}
