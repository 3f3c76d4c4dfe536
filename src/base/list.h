#pragma once

#include "base/arena.h"

#include <cstdint>
#include <glib.h>

// A list that is being built: the tail makes an append a constant step. The record that owns the
// finished list keeps the head alone.
struct List {
    GSList *head;
    GSList *tail;
};

List list_start(Arena *arena, const void *data);
List list_append(Arena *arena, List list, const void *data);
List list_join(List front, List back);

uint32_t list_length(const void *head); // walks over it

// The elements of a GSList or GList, each as a T *:
//     for (const PortId *port : items<PortId>(list))
// The next link is read after the body, so the body may put another element into the current one.
template <class T, class Link> struct Items {
    struct Place {
        const Link *link;
        T *operator*() const { return static_cast<T *>(link->data); }
        void operator++() { link = link->next; }
        bool operator!=(const Place &other) const { return link != other.link; }
    };

    const Link *head;
    Place begin() const { return {head}; }
    Place end() const { return {nullptr}; }
};

template <class T, class Link> Items<T, Link> items(const Link *head) { return {head}; }

// Where an iteration over a list stands. The 32-bit cursor in the owner's record decides; the walk
// remembers the link of that cursor and the length, so that going through a list of n takes n
// steps.
struct ListWalk {
    const void *head;
    const GSList *link;
    uint32_t position;
    uint32_t length;
};

// `head` may be that of a GSList or of a GList: both begin with data and next.
uint32_t list_count(ListWalk *walk, const void *head);

// Sets the cursor to 0; the first element or NULL.
void *list_first(ListWalk *walk, const void *head, uint32_t *cursor);

// Adds one to the cursor and gives the element there, counted from 0; NULL past the end. A cursor
// beyond the length stays as it is. So the cursor ends at the length plus one.
void *list_next(ListWalk *walk, const void *head, uint32_t *cursor);

// The same for the iterations whose cursor ends at the length.
void *list_next_below(ListWalk *walk, const void *head, uint32_t *cursor);

// The element at the cursor, NULL past the end. Leaves the cursor alone.
void *list_at(ListWalk *walk, const void *head, uint32_t cursor);

// The link at the cursor, for the queries that hand out links.
const GSList *list_link_at(ListWalk *walk, const void *head, uint32_t cursor);

// An iteration of the exported queries: a list, and where its owner keeps the place in it. Without
// an owner it is empty: nothing is counted, found or moved.
struct Iteration {
    ListWalk *walk = nullptr;
    const void *head = nullptr;
    uint32_t *cursor = nullptr;
};

inline int32_t iteration_count(const Iteration &list)
{
    return list.walk ? static_cast<int32_t>(list_count(list.walk, list.head)) : 0;
}

template <class T> T *iteration_first(const Iteration &list)
{
    return list.walk ? static_cast<T *>(list_first(list.walk, list.head, list.cursor)) : nullptr;
}

template <class T> T *iteration_next(const Iteration &list)
{
    return list.walk ? static_cast<T *>(list_next(list.walk, list.head, list.cursor)) : nullptr;
}

// The form whose cursor ends at the length.
template <class T> T *iteration_next_below(const Iteration &list)
{
    return list.walk ? static_cast<T *>(list_next_below(list.walk, list.head, list.cursor))
                     : nullptr;
}

// To be called by whoever changes a list that has been iterated.
inline void list_changed(ListWalk *walk) { *walk = ListWalk{}; }
