#include "frame/model.h"

void model_append_to(Bsdl *bsdl, GSList **head, GSList **tail, const void *data)
{
    const List list = model_append(bsdl, {*head, *tail}, data);
    *head = list.head;
    *tail = list.tail;
}

void model_append_linked(Bsdl *bsdl, GList **head, GList **tail, const void *data)
{
    auto *link = model_new<GList>(bsdl);
    link->data = const_cast<void *>(data);
    link->prev = *tail;
    (*tail ? (*tail)->next : *head) = link;
    *tail = link;
}
