#include "tarnlet/bsdl.h"
extern "C" {
__attribute__((weak)) int32_t bsdl_check_instr_reg(Bsdl*){return 0;}
__attribute__((weak)) int32_t bsdl_check_bsr(Bsdl*){return 0;}
}
#include "frame/model.h"
__attribute__((weak)) void model_append_linked(Bsdl *bsdl, GList **head, GList **tail, const void *data)
{
  GList *l = arena_new<GList>(&bsdl->arena); l->data=const_cast<void*>(data); l->prev=*tail; if(*tail)(*tail)->next=l; else *head=l; *tail=l;
}
