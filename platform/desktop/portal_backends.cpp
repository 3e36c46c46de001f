#include "platform/desktop/portal_backends.h"

#include <QFile>
#include <QStandardPaths>
#include <algorithm>
#include <filesystem>
#include <glib.h>
#include <map>
#include <memory>

namespace tolvenary
{

namespace
{

namespace fs = std::filesystem;

using KeyFile = std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)>;

struct Backend {
    std::string busName;
    std::vector<std::string> desktops; ///< those that it was made for, lower case
};

using Backends = std::map<std::string, Backend>;

KeyFile readKeyFile(const fs::path &path)
{
    KeyFile file(g_key_file_new(), g_key_file_unref);
    if (g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE, nullptr) == FALSE)
        file.reset();
    return file;
}

std::vector<std::string> listIn(const KeyFile &file, const char *group, const std::string &key)
{
    const std::unique_ptr<gchar *, decltype(&g_strfreev)> list(
        g_key_file_get_string_list(file.get(), group, key.c_str(), nullptr, nullptr), g_strfreev);
    return list ? std::vector<std::string>(list.get(), list.get() + g_strv_length(list.get()))
                : std::vector<std::string>();
}

bool lists(const std::vector<std::string> &list, const std::string &item)
{
    return std::find(list.begin(), list.end(), item) != list.end();
}

std::vector<std::string> lowered(std::vector<std::string> list)
{
    for (auto &item : list)
        std::transform(item.begin(), item.end(), item.begin(), [](char c) { return g_ascii_tolower(c); });
    return list;
}

/// The backends that offer an interface, by the names of their description files.
Backends backendsOffering(const std::string &interface, const std::vector<std::string> &dataDirectories)
{
    Backends backends;
    std::error_code error;
    for (const auto &data : dataDirectories) {
        const auto folder = fs::path(data) / "xdg-desktop-portal" / "portals";
        for (fs::directory_iterator item(folder, error), end; !error && item != end; item.increment(error)) {
            const auto file =
                item->path().extension() == ".portal" ? readKeyFile(item->path()) : KeyFile(nullptr, g_key_file_unref);
            if (!file || !lists(listIn(file, "portal", "Interfaces"), interface))
                continue;
            const std::unique_ptr<gchar, decltype(&g_free)> busName(
                g_key_file_get_string(file.get(), "portal", "DBusName", nullptr), g_free);
            if (busName)
                backends.try_emplace(item->path().stem(),
                                     Backend{busName.get(), lowered(listIn(file, "portal", "UseIn"))});
        }
    }
    return backends;
}

/// The first portals.conf that exists; in a directory, a desktop's own comes before the common one.
KeyFile readConfiguration(const PortalDirectories &directories)
{
    for (const auto &directory : directories.configuration) {
        const auto folder = fs::path(directory) / "xdg-desktop-portal";
        for (const auto &desktop : directories.desktops) {
            if (auto file = readKeyFile(folder / (desktop + "-portals.conf")))
                return file;
        }
        if (auto file = readKeyFile(folder / "portals.conf"))
            return file;
    }
    return {nullptr, g_key_file_unref};
}

/// The first wish that an installed backend fulfils.
const Backend *firstOf(const std::vector<std::string> &wishes, const Backends &backends)
{
    for (const auto &wish : wishes) {
        if (wish == "*" && !backends.empty())
            return &backends.begin()->second;
        if (const auto found = backends.find(wish); found != backends.end())
            return &found->second;
    }
    return nullptr;
}

const Backend *volunteer(const std::vector<std::string> &desktops, const Backends &backends)
{
    for (const auto &desktop : desktops) {
        for (const auto &[name, backend] : backends) {
            if (lists(backend.desktops, desktop))
                return &backend;
        }
    }
    return nullptr;
}

std::vector<std::string> toStrings(const QStringList &list)
{
    std::vector<std::string> strings;
    for (const auto &item : list)
        strings.push_back(QFile::encodeName(item).toStdString());
    return strings;
}

} // namespace

PortalDirectories portalDirectories()
{
    const auto data = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    const auto desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    return {toStrings(QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation) + data), toStrings(data),
            lowered(toStrings(desktops))};
}

std::optional<std::string> portalBackendFor(const std::string &interface, const PortalDirectories &directories)
{
    const auto backends = backendsOffering(interface, directories.data);
    const Backend *chosen = nullptr;
    if (const auto configuration = readConfiguration(directories)) {
        const auto wishes = listIn(configuration, "preferred", interface);
        const auto &first = wishes.empty() ? listIn(configuration, "preferred", "default") : wishes;
        if (lists(first, "none"))
            return std::nullopt;
        chosen = firstOf(first, backends);
    }
    if (!chosen)
        chosen = volunteer(directories.desktops, backends);
    if (!chosen)
        chosen = firstOf({"gtk"}, backends); // serves every desktop that brings none of its own
    return chosen ? std::optional(chosen->busName) : std::nullopt;
}

} // namespace tolvenary
