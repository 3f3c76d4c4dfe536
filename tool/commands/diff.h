#pragma once

#include "device_json.h"

// What differs between two documents of `tarnlet info --json`: the changes of `tarnlet diff
// --json`.
Json changes_between(const Json &a, const Json &b);
