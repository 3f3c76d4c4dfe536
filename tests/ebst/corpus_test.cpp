// Real descriptions: the written file, parsed back, agrees with what the queries say.

#include "support/description.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <set>
#include <sstream>

using namespace support;
namespace fs = std::filesystem;

namespace
{

struct Counts {
    int pins = 0, instructions = 0, cells = 0, chain = 0;
    bool operator==(const Counts &) const = default;
};

std::ostream &operator<<(std::ostream &out, const Counts &counts)
{
    return out << counts.pins << " pins, " << counts.instructions << " instruction lines, "
               << counts.cells << " cells, " << counts.chain << " chain rows";
}

// Lines of a table start with two blanks, those of private instructions with a star and a blank
// after the heading.
Counts counts_of(const std::string &text)
{
    Counts counts;
    std::istringstream lines(text);
    std::string section;
    int banners = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line == "PIN_LIST" || line == "INSTRUCTION_LIST" || line == "CHAIN_LIST") {
            section = line;
            banners = 0;
        } else if (line == "END " + section) {
            section.clear();
        } else if (line.starts_with("CELL ")) {
            counts.cells++;
        } else if (line.starts_with("**")) {
            banners++;
        } else if (banners == 2 && section == "PIN_LIST") {
            counts.pins++;
        } else if (banners == 2 && section == "INSTRUCTION_LIST") {
            counts.instructions++;
        } else if (banners == 2 && section == "CHAIN_LIST") {
            counts.chain++;
        }
    }
    return counts;
}

Counts counts_of(Bsdl *bsdl)
{
    Counts counts;
    for (PinEntry *pin : all_of(bsdl, bsdlGetFirstPin, bsdlGetNextPin))
        counts.pins += bsdlGetPinPhysicalName(pin) != nullptr;
    for (InstructionEntry *entry : all_of(bsdl, bsdlGetFirstInstruction, bsdlGetNextInstruction))
        counts.instructions += bsdlGetNbrOfInstrPatterns(entry);
    std::set<std::string> names;
    std::set<int32_t> numbers;
    for (CellEntry *cell : all_of(bsdl, bsdlGetFirstCellEntry, bsdlGetNextCellEntry)) {
        names.insert(bsdlGetCellEbstName(cell));
        numbers.insert(bsdlGetCellNumber(cell));
    }
    counts.cells = static_cast<int>(names.size());
    counts.chain = static_cast<int>(numbers.size());
    return counts;
}

} // namespace

TEST(EbstCorpus, FilesAgreeWithTheQueries)
{
    fs::path corpus = TARNLET_CORPUS;
    if (corpus.empty())
        GTEST_SKIP() << "TARNLET_CORPUS names no folder";
    std::vector<fs::path> files;
    for (const auto &file : fs::directory_iterator(corpus)) {
        std::string suffix = file.path().extension();
        std::transform(suffix.begin(), suffix.end(), suffix.begin(), ::tolower);
        if (suffix.starts_with(".bs"))
            files.push_back(file.path());
    }
    std::sort(files.begin(), files.end());
    ASSERT_FALSE(files.empty()) << corpus;

    int passed = 0;
    Counts total;
    for (const fs::path &file : files) {
        Reading reading(
            read_text(file),
            {.verbosity = 0, .package_dirs = {corpus / "packages"}, .name = file.filename()});
        if (!reading.handle() || bsdlGetNumErrors(reading) || bsdl_check(reading))
            continue;
        std::string path = reading.folder() + "/out.dsh";
        ASSERT_EQ(bsdlSetEbstFile(reading, path.c_str()), 0);
        ASSERT_EQ(bsdlGenEbst(reading), 0) << file;
        ASSERT_EQ(bsdlCreateEbst(reading), 0) << file;
        Counts found = counts_of(read_text(path));
        EXPECT_EQ(found, counts_of(reading.handle())) << file;
        passed++;
        total = {total.pins + found.pins, total.instructions + found.instructions,
                 total.cells + found.cells, total.chain + found.chain};
    }
    std::cout << "of " << files.size() << " files " << passed << " pass the check: " << total
              << "\n";
    EXPECT_GT(passed, 0);
}
