#pragma once

// "Memory error" at verbosity 0, and the end of the process: what hosts are promised when memory
// runs out while text is scanned or a package is sought. Nothing else ends the process for want of
// memory.
[[noreturn]] void end_on_memory_error();
