#pragma once

namespace support
{

struct Message;

// The catalogue of rules knows a message: its rule, the level that the rule is reported at, and one
// of its forms reads like the text. Errors and warnings have a rule, but for verdicts on
// checks. Every message that a Reading
// collects is held to this.
void expect_in_catalogue(const Message &message);

} // namespace support
