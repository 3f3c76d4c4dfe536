#pragma once

#include "device_json.h"

#include <string>
#include <string_view>

// An HTML document that shows `data`. It asks for nothing from anywhere, and its security policy
// forbids it to; whatever the texts of `data` are, they are shown as text.
std::string page_of(std::string_view title, const Json &data);
