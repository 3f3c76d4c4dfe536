#pragma once

struct Bsdl;

// "Memory error" at verbosity 0, and the end of the process: what hosts of readBsdl() are promised
// when memory runs out while text is scanned or a package is searched. Nothing else ends the
// process for want of memory. A reading from memory stops instead; the caller goes on with what it
// has.
void memory_ran_out(Bsdl *bsdl);
