// replay TARGET FILE|FOLDER...: runs inputs through a target, with any compiler. Inputs that once
// showed a fault stand in fuzz/corpus/TARGET and are run by the tests.

#include "targets.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

static bool run_file(const FuzzTarget &target, const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        return false;
    }
    const std::vector<char> text{std::istreambuf_iterator<char>(file), {}};
    std::fprintf(stderr, "%s\n", path.c_str());
    target.run(reinterpret_cast<const uint8_t *>(text.data()), text.size());
    return true;
}

int main(int argc, char **argv)
{
    const FuzzTarget *target = nullptr;
    for (const FuzzTarget &row : FUZZ_TARGETS)
        if (argc > 2 && !std::strcmp(row.name, argv[1]))
            target = &row;
    if (!target) {
        std::fprintf(stderr, "usage: replay TARGET FILE|FOLDER...\ntargets:");
        for (const FuzzTarget &row : FUZZ_TARGETS)
            std::fprintf(stderr, " %s", row.name);
        std::fprintf(stderr, "\n");
        return 2;
    }
    int runs = 0;
    for (int i = 2; i < argc; i++) {
        if (!std::filesystem::is_directory(argv[i])) {
            if (!run_file(*target, argv[i]))
                return 1;
            runs++;
            continue;
        }
        for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (entry.is_regular_file() && !run_file(*target, entry.path()))
                return 1;
            runs++;
        }
    }
    std::printf("%s: %d inputs\n", target->name, runs);
    return 0;
}
