#pragma once

#include <cstdint>
#include <string>
#include <vector>

// A finding while it is made; see BsdlFinding.

struct FoundPlace {
    std::string file;
    int32_t line = 0;
    int32_t column = 0;
    int32_t end_line = 0;
    int32_t end_column = 0;
};

struct FindingEdit {
    FoundPlace place;
    std::string text;
};

struct FindingRelated {
    FoundPlace place;
    std::string text;
};

struct Finding {
    int32_t severity = 0;
    std::string rule;
    FoundPlace place;
    std::string text;
    std::string hint;
    std::string fix;
    std::vector<FindingEdit> edits;
    bool sure = false;
    std::vector<FindingRelated> related;
    int32_t because = -1;
    uint32_t count = 1;
    bool suppressed = false;
    std::string reason; // for that
    std::string pin_map;
};
