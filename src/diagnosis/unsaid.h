#pragma once

struct CheckedText;

// Has the messages say what they leave to be understood: that a check has failed for a reason that
// no message gives, and where a package was looked for.
void say_the_unsaid(CheckedText &checked);
