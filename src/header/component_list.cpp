// Lists of components that hosts keep. They are plain GLib lists: nothing in them belongs to a
// description.

#include "tarnlet/bsdl.h"

int32_t bsdlInitComponentList(void) { return 0; }

void bsdlFreeComponentList(GList *list) { (void)list; }

int32_t bsdlGetNbrOfComponents(GList *list) { return static_cast<int32_t>(g_list_length(list)); }

void *bsdlGetFirstComponent(GList *list) { return list ? list->data : nullptr; }

void *bsdlGetNextComponent(GList *cell) { return cell && cell->next ? cell->next->data : nullptr; }

GList *bsdlAddComponent(GList *list, void *component) { return g_list_append(list, component); }

GList *bsdlFindComponent(GList *list, const void *component)
{
    return g_list_find(list, component);
}
