#include "base/list.h"

List list_start(Arena *arena, const void *data)
{
    auto *link = arena_new<GSList>(arena);
    link->data = const_cast<void *>(data);
    return {link, link};
}

List list_append(Arena *arena, List list, const void *data)
{
    List last = list_start(arena, data);
    return list_join(list, last);
}

List list_join(List front, List back)
{
    if (!front.head)
        return back;
    if (!back.head)
        return front;
    front.tail->next = back.head;
    return {front.head, back.tail};
}

uint32_t list_length(const void *head)
{
    uint32_t length = 0;
    for (const auto *link = static_cast<const GSList *>(head); link; link = link->next)
        length++;
    return length;
}

static void walk_over(ListWalk *walk, const void *head)
{
    if (walk->head == head && walk->length)
        return;
    *walk = ListWalk{.head = head,
                     .link = static_cast<const GSList *>(head),
                     .position = 0,
                     .length = list_length(head)};
}

uint32_t list_count(ListWalk *walk, const void *head)
{
    walk_over(walk, head);
    return walk->length;
}

const GSList *list_link_at(ListWalk *walk, const void *head, uint32_t cursor)
{
    walk_over(walk, head);
    if (cursor >= walk->length)
        return nullptr;
    if (cursor < walk->position) {
        walk->link = static_cast<const GSList *>(head);
        walk->position = 0;
    }
    for (; walk->position < cursor; walk->position++)
        walk->link = walk->link->next;
    return walk->link;
}

void *list_at(ListWalk *walk, const void *head, uint32_t cursor)
{
    const GSList *link = list_link_at(walk, head, cursor);
    return link ? link->data : nullptr;
}

void *list_first(ListWalk *walk, const void *head, uint32_t *cursor)
{
    *cursor = 0;
    return list_at(walk, head, 0);
}

void *list_next(ListWalk *walk, const void *head, uint32_t *cursor)
{
    if (*cursor > list_count(walk, head))
        return nullptr;
    return list_at(walk, head, ++*cursor);
}

void *list_next_below(ListWalk *walk, const void *head, uint32_t *cursor)
{
    if (*cursor >= list_count(walk, head))
        return nullptr;
    return list_at(walk, head, ++*cursor);
}
