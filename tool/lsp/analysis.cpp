#include "lsp/analysis.h"

#include "code_words.h"

#include <cstdlib>
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
    if (!thread.joinable())
        return;
    {
        const std::lock_guard hold(lock);
        ending = true;
        something_fresh = true;
    }
    wake.notify_one();
    thread.join();
}

void Analysis::start(Job job)
{
    {
        const std::lock_guard hold(lock);
        unmended.erase(job.uri);
        fresh.insert_or_assign(job.uri, std::move(job));
        something_fresh = true;
    }
    wake.notify_one();
}

void Analysis::forget(const std::string &uri)
{
    const std::lock_guard hold(lock);
    fresh.erase(uri);
    unmended.erase(uri);
}

void Analysis::ask_for_end()
{
    {
        const std::lock_guard hold(lock);
        end_asked_for = true;
    }
    wake.notify_one();
}

// The next job; false at the end.
bool Analysis::take(Job &job, bool &as_read)
{
    std::unique_lock hold(lock);
    const auto has_work = [this] { return ending || !fresh.empty() || !unmended.empty(); };
    wake.wait(hold, [&] { return has_work() || end_asked_for; });
    while (!has_work()) {
        end_asked_for = false;
        hold.unlock();
        done(nullptr);
        hold.lock();
        wake.wait(hold, [&] { return has_work() || end_asked_for; });
    }
    if (ending)
        return false;
    as_read = !fresh.empty();
    std::map<std::string, Job> &from = as_read ? fresh : unmended;
    job = from.begin()->second;
    from.erase(from.begin());
    if (as_read && !job.excluded)
        unmended.insert_or_assign(job.uri, job);
    something_fresh = !fresh.empty();
    return true;
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
    Job job;
    bool as_read;
    while (take(job, as_read)) {
        std::shared_ptr<const Findings> findings =
            as_read ? diagnose(job, true)
                    : diagnose(job, false, [this] { return something_fresh.load(); });
        if (findings) {
            done(std::move(findings));
            give_back_memory();
            continue;
        }
        // Another file's text came between: this one is diagnosed after it.
        const std::lock_guard hold(lock);
        if (!as_read && !fresh.contains(job.uri) && something_fresh)
            unmended.insert_or_assign(job.uri, job);
    }
}

} // namespace lsp
