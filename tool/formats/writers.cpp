#include "formats/reporter.h"

#include <cstdio>

Writer standard_writer()
{
    return [](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); };
}
