#pragma once

#include "diagnosis/draft.h"
#include "diagnosis/trial.h"

#include <memory>
#include <string_view>
#include <vector>

using Drafts = std::vector<std::unique_ptr<Draft>>;

// What a repair is tried on.
struct RepairScene {
    std::string_view text; // in which mistakes of syntax are mended
    const ReadingOptions &options;
    const CheckedText &checked;
    const std::string &pin_map; // that it was checked with; empty for the default
    Work *work;
};

// Looks for the edits that mend what rules find: a name that is nearly that of something declared,
// a number that is free. An edit is proved by reading and checking the text with it: its finding
// has to go and no other may come. Those that go with it follow from it.
void repair_findings(const RepairScene &scene, Drafts &drafts);
