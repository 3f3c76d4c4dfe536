#include "targets.h"

#include "frame/reader_state.h"
#include "tarnlet/diagnosis.h"

#include <cstdlib>
#include <cstring>
#include <vector>

// A text in memory: it is read as a file of the same bytes is, message by message, but never ends
// the process; and what its diagnosis finds lies within it.

namespace
{

struct Read {
    const char *path;
    uint32_t flags;
    BsdlContext *context;
    Bsdl *handle;
};

} // namespace

static void note(void *data, BsdlMessage *message)
{
    static_cast<std::vector<std::string> *>(data)->emplace_back(message->text);
}

static void read_step(void *data)
{
    auto *read = static_cast<Read *>(data);
    read->handle = readBsdl(read->path, nullptr, nullptr, read->flags, read->context);
}

static void compare_with_file(const uint8_t *data, size_t size)
{
    static MemoryFile file("text");
    file.write(data, size);
    std::vector<std::string> of_file;
    std::vector<std::string> of_text;
    BsdlContext to_file = {note, &of_file, 4};
    BsdlContext to_text = {note, &of_text, 4};
    Read read = {file.path().c_str(), fingerprint(data, size) & BSDL_FLAG_STRICT, &to_file,
                 nullptr};
    // A reading begins with the words that the one before has left.
    const uint32_t words = reader_state.rule_set;
    const bool came_back = survives(read_step, &read);
    reader_state.rule_set = words;
    Bsdl *h = readBsdlText(reinterpret_cast<const char *>(data), size, read.path, nullptr, nullptr,
                           read.flags, &to_text, nullptr, 0);
    if (of_file != of_text || (h != nullptr) != (came_back && read.handle))
        std::abort();
    bsdlRelease(h);
    bsdlRelease(read.handle);
}

static void look(const char *text)
{
    volatile size_t length = text ? std::strlen(text) : 0;
    (void)length;
}

static void look(const BsdlPlace &place, const std::vector<int32_t> &line_lengths)
{
    look(place.file);
    if (place.line == 0 || std::strcmp(place.file, "text.bsd") != 0)
        return;
    const auto in_line = [&](int32_t line, int32_t column) {
        const auto lines = static_cast<int32_t>(line_lengths.size());
        return line >= 1 && line <= lines && column >= 0 &&
               column <= line_lengths[static_cast<size_t>(line) - 1] + 2;
    };
    if (!in_line(place.line, place.column) || place.end_line < 0 || place.end_column < 0)
        std::abort();
}

// The text with its line ends, and one more line after the last.
static std::vector<int32_t> lengths_of_lines(const uint8_t *data, size_t size)
{
    std::vector<int32_t> lengths = {0};
    for (size_t i = 0; i < size; i++) {
        const bool pair = data[i] == '\r' && i + 1 < size && data[i + 1] == '\n';
        if ((data[i] == '\n' || data[i] == '\r') && !pair)
            lengths.push_back(0);
        else
            lengths.back()++;
    }
    lengths.push_back(0);
    return lengths;
}

// Trials of fixes are most of the work, and after some of them nothing new happens.
static int32_t is_impatient(void *trials) { return --*static_cast<int *>(trials) < 0; }

static void diagnose(const uint8_t *data, size_t size)
{
    int trials = 200;
    const BsdlDiagnosisOptions options = {.size = sizeof options,
                                          .flags = fingerprint(data, size) >> 8 & BSDL_FLAG_STRICT,
                                          .cancelled = is_impatient,
                                          .cancel_data = &trials};
    BsdlDiagnosis *diagnosis =
        bsdlDiagnose(reinterpret_cast<const char *>(data), size, "text.bsd", &options);
    if (!diagnosis && trials < 0)
        return;
    if (!diagnosis)
        std::abort();
    const std::vector<int32_t> lines = lengths_of_lines(data, size);
    for (uint32_t i = 0; i < bsdlFindingCount(diagnosis); i++) {
        const BsdlFinding *finding = bsdlFindingAt(diagnosis, i);
        look(finding->place, lines);
        for (const char *text :
             {finding->rule, finding->text, finding->hint, finding->fix, finding->reason})
            look(text);
        for (uint32_t edit = 0; edit < finding->edit_count; edit++) {
            look(finding->edits[edit].place, lines);
            look(finding->edits[edit].text);
        }
        for (uint32_t other = 0; other < finding->related_count; other++) {
            look(finding->related[other].place, lines);
            look(finding->related[other].text);
        }
    }
    look(bsdlDiagnosisUnchecked(diagnosis));
    bsdlGetNumErrors(bsdlDiagnosisBsdl(diagnosis));
    bsdlDiagnosisRelease(diagnosis);
}

void fuzz_memory(const uint8_t *data, size_t size)
{
    compare_with_file(data, size);
    diagnose(data, size);
}
