// What any program that links GLib costs to start.

#include <glib.h>

int main()
{
    g_slist_free(nullptr);
    return 0;
}
