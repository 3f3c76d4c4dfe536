#pragma once

#include <string>

// For --list-rules: all rules as text, json, or as the markdown of docs/rules.md.
int list_rules(const std::string &format);

// For --explain. The exit status.
int explain_rule(const std::string &id);
