// The public header as a C++20 host sees it. It stands first, so that it has to bring along all
// that it needs. Nothing here is run: compiling is the test.
#include <tarnlet/bsdl.h>
#include <tarnlet/symbols.h>

#include "header_layout.h"

#include <type_traits>

// A host may hold records by value and copy them, whatever it is compiled with.
static_assert(std::is_trivially_copyable_v<BsdlContext> && std::is_standard_layout_v<BsdlContext>);
static_assert(std::is_trivially_copyable_v<PortId> && std::is_standard_layout_v<PortId>);

int header_cxx_host(const char *file_name)
{
    const char *text = nullptr;
    auto sink = [](void *sink_data, BsdlMessage *msg) {
        *static_cast<const char **>(sink_data) = msg->text;
    };
    BsdlContext context{.message_sink = sink, .sink_data = &text, .verbosity = 2};
    GSList *dirs = bsdlUsrPackDirs(file_name, nullptr);
    Bsdl *h = readBsdl(file_name, nullptr, dirs, BSDL_FLAG_STRICT | BSDL_FLAG_FAST_READ, &context);
    int inputs = 0;

    for (PinEntry *pin = bsdlGetFirstPin(h); pin; pin = bsdlGetNextPin(h))
        if (bsdlGetPinType(pin) == PIN_TYPE_IN)
            inputs++;
    bsdl_msg(BSDL_LEVEL_INFO, 1, "%s: %i", bsdlGetTckPortId(h)->name, inputs);
    bsdlRelease(h);
    return inputs;
}
