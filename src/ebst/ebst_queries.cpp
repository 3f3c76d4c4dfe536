#include "ebst/ebst.h"

int32_t bsdlGetNrOfEbstPins(Bsdl *bsdl)
{
    if (!bsdl || !bsdl->ebst)
        return -1;
    return static_cast<int32_t>(list_count(&bsdl->ebst->pin_walk, bsdl->ebst->pins));
}

EbstPin *bsdlGetFirstEbstPin(Bsdl *bsdl)
{
    if (!bsdl || !bsdl->ebst || !bsdl->ebst->pins)
        return nullptr;
    Ebst *ebst = bsdl->ebst;
    return static_cast<EbstPin *>(list_first(&ebst->pin_walk, ebst->pins, &ebst->pin_cursor));
}

EbstPin *bsdlGetNextEbstPin(Bsdl *bsdl)
{
    if (!bsdl || !bsdl->ebst)
        return nullptr;
    Ebst *ebst = bsdl->ebst;
    return static_cast<EbstPin *>(list_next(&ebst->pin_walk, ebst->pins, &ebst->pin_cursor));
}

const char *bsdlGetEbstPinNumber(EbstPin *pin) { return pin ? pin->number : nullptr; }

const char *bsdlGetEbstPinName(EbstPin *pin) { return pin ? pin->name : nullptr; }

int32_t bsdlGetEbstPinType(EbstPin *pin) { return pin ? pin->type : 0; }
