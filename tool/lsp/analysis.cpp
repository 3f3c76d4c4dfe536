#include "lsp/analysis.h"

#include "code_words.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace lsp
{

// --------------------------------------------------------------------------------- one diagnosis

static std::string text_or_empty(const char *text) { return text ? text : ""; }

static Findings::Place place_of(const BsdlPlace &place)
{
    return {text_or_empty(place.file), place.line, place.column, place.end_line, place.end_column};
}

static Findings::Finding finding_of(const Finding &shown)
{
    const BsdlFinding &from = *shown.found;
    Findings::Finding finding = {.severity = shown.severity,
                                 .rule = text_or_empty(from.rule),
                                 .place = place_of(from.place),
                                 .text = text_or_empty(from.text),
                                 .hint = text_or_empty(from.hint),
                                 .fix = text_or_empty(from.fix),
                                 .edits = {},
                                 .sure = from.fix_sure != 0,
                                 .related = {},
                                 .because = shown.because,
                                 .count = from.count,
                                 .suppressed = shown.accepted != Accepted::NO};
    for (uint32_t i = 0; i < from.edit_count; i++)
        finding.edits.push_back({place_of(from.edits[i].place), from.edits[i].text});
    for (uint32_t i = 0; i < from.related_count; i++)
        finding.related.push_back({place_of(from.related[i].place), from.related[i].text});
    return finding;
}

static DeviceFacts facts_of(Bsdl *bsdl)
{
    DeviceFacts facts;
    facts.standard = text_or_empty(standard_word(bsdlStandard(bsdl)));
    for (InstructionEntry *entry = bsdlGetFirstInstruction(bsdl); entry;
         entry = bsdlGetNextInstruction(bsdl)) {
        InstructionFacts instruction = {.name = text_or_empty(bsdlGetInstructionName(entry)),
                                        .patterns = {},
                                        .register_name =
                                            text_or_empty(bsdlGetInstrRegisterName(entry)),
                                        .register_length = bsdlGetInstrRegisterLength(entry),
                                        .capture = text_or_empty(bsdlGetInstrCaptureValue(entry))};
        for (const char *pattern = bsdlGetFirstInstrPattern(entry); pattern;
             pattern = bsdlGetNextInstrPattern(entry))
            instruction.patterns.emplace_back(pattern);
        facts.instructions.push_back(std::move(instruction));
    }
    for (GSList *cell = bsdlGetFirstCellDesc(bsdl); cell; cell = bsdlGetNextCellDesc(bsdl))
        facts.cells.emplace_back(text_or_empty(bsdlGetCellDescName(cell)),
                                 text_or_empty(bsdlGetCellDescPackage(cell)));
    for (const char *file = bsdlGetFirstDotALLFileSpec(bsdl); file;
         file = bsdlGetNextDotALLFileSpec(bsdl))
        facts.package_files.emplace_back(file);
    return facts;
}

std::shared_ptr<const Findings> diagnose(const Job &job, bool as_read,
                                         const std::function<bool()> &cancelled)
{
    std::vector<BsdlPackageText> packages;
    for (const PackageText &package : job.packages)
        packages.push_back({.name = package.name.c_str(),
                            .file_name = package.path.c_str(),
                            .text = package.text->data(),
                            .length = package.text->size()});
    const DiagnosedFile file(
        job.path, *job.text,
        {.read = job.read, .as_read = as_read, .comments = true, .cancelled = cancelled}, packages);
    if (file.state != FileState::READ)
        return nullptr;
    auto findings = std::make_shared<Findings>();
    findings->uri = job.uri;
    findings->version = job.version;
    findings->as_read = as_read;
    findings->excluded = job.excluded;
    findings->settings_problem = job.settings_problem;
    const FileFindings selected =
        select_findings(file, {.rules = job.rules, .fingerprints = false});
    findings->all.reserve(selected.findings.size());
    for (const Finding &shown : selected.findings)
        findings->all.push_back(finding_of(shown));
    findings->facts = facts_of(bsdlDiagnosisBsdl(file.diagnosis.get()));
    findings->facts.checked = file.checked();
    findings->unchecked = file.unchecked();
    return findings;
}

// ---------------------------------------------------------------------------------- in background

Analysis::Analysis(Done to) : done(std::move(to)), thread([this] { run(); }) {}

void Analysis::stop()
{
    {
        const std::lock_guard hold(lock);
        stopping = true;
    }
    wake.notify_one();
    if (thread.joinable())
        thread.join();
}

void Analysis::start(Job job)
{
    {
        const std::lock_guard hold(lock);
        job.number = newest[job.uri] = ++jobs;
        unmended.erase(job.uri);
        unread.insert_or_assign(job.uri, std::move(job));
    }
    wake.notify_one();
}

void Analysis::forget(const std::string &uri)
{
    const std::lock_guard hold(lock);
    newest.erase(uri);
    unread.erase(uri);
    unmended.erase(uri);
}

void Analysis::notify_when_idle()
{
    {
        const std::lock_guard hold(lock);
        idle_asked_for = working || !unread.empty() || !unmended.empty();
        if (idle_asked_for)
            return;
    }
    done(nullptr);
}

// The next job; false at the end.
bool Analysis::take(Job &job, bool &as_read)
{
    std::unique_lock hold(lock);
    wake.wait(hold, [&] { return stopping || !unread.empty() || !unmended.empty(); });
    if (stopping)
        return false;
    as_read = !unread.empty();
    Jobs &from = as_read ? unread : unmended;
    job = std::move(from.begin()->second);
    from.erase(from.begin());
    working = true;
    return true;
}

void Analysis::finish(Job job, bool is_to_be_mended)
{
    bool end;
    {
        const std::lock_guard hold(lock);
        const auto counts = newest.find(job.uri);
        if (is_to_be_mended && counts != newest.end() && counts->second == job.number)
            unmended.insert_or_assign(job.uri, std::move(job));
        working = false;
        end = idle_asked_for && unread.empty() && unmended.empty();
        if (end)
            idle_asked_for = false;
    }
    if (end)
        done(nullptr);
}

bool Analysis::is_called_off(const Job &job)
{
    const std::lock_guard hold(lock);
    const auto counts = newest.find(job.uri);
    return stopping || !unread.empty() || counts == newest.end() || counts->second != job.number;
}

// The model of a large description is many times its text, and is not needed until the next edit.
static void give_back_memory()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

void Analysis::run()
{
    bool as_read;
    for (Job job; take(job, as_read);) {
        bool called_off = false;
        std::function<bool()> cancelled;
        if (!as_read)
            cancelled = [&] { return called_off = is_called_off(job); };
        if (std::shared_ptr<const Findings> findings = diagnose(job, as_read, cancelled))
            done(std::move(findings));
        if (!as_read && !called_off)
            give_back_memory();
        const bool is_to_be_mended = as_read ? !job.excluded : called_off;
        finish(std::move(job), is_to_be_mended);
    }
}

} // namespace lsp
