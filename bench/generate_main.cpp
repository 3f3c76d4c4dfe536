// Writes generated descriptions: one to standard output, or many into a folder.

#include "generate.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

static int usage()
{
    fprintf(stderr, "usage: generate scalar|vector|instructions|pairs SIZE > FILE\n"
                    "       generate folder COUNT FOLDER\n");
    return 2;
}

int main(int argc, char **argv)
{
    if (argc < 3)
        return usage();
    char *end = nullptr;
    const unsigned long size = strtoul(argv[2], &end, 10);
    if (*end != '\0' || size == 0 || size > 100'000'000)
        return usage();

    if (argc == 4 && strcmp(argv[1], "folder") == 0) {
        if (generate_folder(argv[3], static_cast<uint32_t>(size)))
            return 0;
        fprintf(stderr, "cannot write into %s\n", argv[3]);
        return 1;
    }
    if (argc != 3)
        return usage();
    for (const ShapeName &row : shape_names) {
        if (strcmp(argv[1], row.name) != 0)
            continue;
        const std::string text =
            generate_description(row.shape, static_cast<uint32_t>(size), "generated");
        return fwrite(text.data(), 1, text.size(), stdout) == text.size() ? 0 : 1;
    }
    return usage();
}
