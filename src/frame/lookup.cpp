#include "frame/lookup.h"

#include "frame/model.h"

Lookups *lookups_of(Bsdl *bsdl)
{
    if (!bsdl->lookups) {
        bsdl->lookups = model_new<Lookups>(bsdl);
        *bsdl->lookups = Lookups{};
    }
    Lookups *lookups = bsdl->lookups;
    if (!lookups->arena.block_size && !arena_start(&lookups->arena))
        bsdl->arena.failed = true;
    return lookups;
}

void lookups_drop(Bsdl *bsdl)
{
    if (!bsdl->lookups)
        return;
    bsdl->arena.failed |= bsdl->lookups->arena.failed;
    arena_release(&bsdl->lookups->arena);
    *bsdl->lookups = Lookups{};
}

void **list_table(Arena *arena, const void *head, uint32_t *count)
{
    uint32_t length = list_length(head);
    *count = 0;
    if (!length)
        return nullptr;
    void **table = arena_array<void *>(arena, length);
    if (!table)
        return nullptr;
    for (const auto *link = static_cast<const GSList *>(head); link; link = link->next)
        table[(*count)++] = link->data;
    return table;
}

uint64_t port_bit_key(const PortId *port)
{
    return uint64_t{name_fold(port->name)} << 32 | static_cast<uint32_t>(port->subscript);
}

uint64_t port_key(const PortId *port)
{
    // Fold numbers stay far below 2^31, so the top bit is free.
    return port_bit_key(port) | uint64_t{port->subscripted != 0} << 63;
}
