#include "frame/call.h"

#include "frame/model.h"
#include "frame/reader.h"
#include "frame/reader_state.h"

#include <utility>

static int32_t code_at_start(const Bsdl *bsdl)
{
    if (!bsdl)
        return BSDL_RESULT_NO_HANDLE;
    if (bsdl->in_call && !reader_state.call)
        return BSDL_RESULT_FAILED;
    return bsdl->data ? BSDL_RESULT_OK : BSDL_RESULT_NO_DATA;
}

Call::Call(Bsdl *handle)
    : bsdl(handle), code(code_at_start(handle)), outermost(handle && !handle->in_call)
{
    if (!outermost)
        return;
    context = reader_state.has_read ? reader_state.context : bsdl->context;
    bsdl->in_call = true;
    around = std::exchange(reader_state.call, this);
}

Call::~Call()
{
    if (!outermost)
        return;
    reader_state.call = around;
    bsdl->in_call = false;
    give_back_if_asked(bsdl);
}
