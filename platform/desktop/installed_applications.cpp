#include "platform/desktop/installed_applications.h"

#include "platform/desktop/desktop_command.h"

#include <algorithm>
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>
#include <memory>
#include <string_view>

namespace tolvenary
{

namespace
{

std::string orEmpty(const char *text)
{
    return text ? text : std::string();
}

std::string withoutSuffix(std::string id)
{
    constexpr std::string_view suffix = ".desktop";
    if (id.ends_with(suffix))
        id.resize(id.size() - suffix.size());
    return id;
}

DesktopEntry entryOf(GAppInfo *info)
{
    const std::unique_ptr<gchar, decltype(&g_free)> tryExec(
        G_IS_DESKTOP_APP_INFO(info) ? g_desktop_app_info_get_string(G_DESKTOP_APP_INFO(info), "TryExec") : nullptr,
        g_free);
    return {withoutSuffix(orEmpty(g_app_info_get_id(info))), orEmpty(g_app_info_get_name(info)),
            parseDesktopCommand(orEmpty(g_app_info_get_commandline(info)), orEmpty(tryExec.get()))};
}

} // namespace

std::vector<DesktopEntry> installedApplications()
{
    std::vector<DesktopEntry> entries;
    GList *all = g_app_info_get_all();
    for (const GList *item = all; item; item = item->next) {
        auto *info = G_APP_INFO(item->data);
        if (g_app_info_should_show(info) != FALSE)
            entries.push_back(entryOf(info));
    }
    g_list_free_full(all, g_object_unref);
    std::sort(entries.begin(), entries.end(), [](const DesktopEntry &a, const DesktopEntry &b) { return a.id < b.id; });
    return entries;
}

} // namespace tolvenary
