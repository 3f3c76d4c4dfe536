#include "frame/model.h"

void model_append_linked(Bsdl *bsdl, GList **head, GList **tail, const void *data)
{
    auto *link = model_new<GList>(bsdl);
    link->data = const_cast<void *>(data);
    link->prev = *tail;
    (*tail ? (*tail)->next : *head) = link;
    *tail = link;
}
