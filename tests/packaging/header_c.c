// The public header as a C11 host sees it. It stands first, so that it has to bring along all
// that it needs. Nothing here is run: compiling is the test.
#include <tarnlet/bsdl.h>
#include <tarnlet/symbols.h>

#include "header_layout.h"

static void sink(void *sink_data, BsdlMessage *msg) { *(const char **)sink_data = msg->text; }

int header_c_host(const char *file_name)
{
    const char *text = NULL;
    BsdlContext context = {sink, &text, 2};
    GSList *dirs = bsdlUsrPackDirs(file_name, NULL);
    Bsdl *h = readBsdl(file_name, NULL, dirs, BSDL_FLAG_STRICT | BSDL_FLAG_FAST_READ, &context);
    int inputs = 0;

    for (PinEntry *pin = bsdlGetFirstPin(h); pin != NULL; pin = bsdlGetNextPin(h))
        if (bsdlGetPinType(pin) == PIN_TYPE_IN)
            inputs++;
    bsdl_msg(BSDL_LEVEL_INFO, 1, "%s: %i", bsdlGetTckPortId(h)->name, inputs);
    bsdlRelease(h);
    return inputs;
}
