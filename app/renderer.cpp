#include "app/renderer.h"

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <string_view>
#include <unistd.h>

namespace tolvenary
{

namespace
{

/// Where Qt Quick looks for the user's choice, which a program's own choice would override.
constexpr std::array wishes{"QT_QUICK_BACKEND", "QSG_RHI_BACKEND", "QMLSCENE_DEVICE"};

bool isUsable(const std::filesystem::path &node)
{
    return access(node.c_str(), R_OK | W_OK) == 0;
}

bool hasRenderNode(const std::filesystem::path &folder)
{
    std::error_code noFolder;
    const std::filesystem::directory_iterator nodes(folder, noFolder);
    return std::any_of(begin(nodes), end(nodes), [](const std::filesystem::directory_entry &node) {
        return node.path().filename().string().rfind("renderD", 0) == 0 && isUsable(node);
    });
}

} // namespace

bool wantsSoftwareRenderer(const std::filesystem::path &devices)
{
    if (std::any_of(wishes.begin(), wishes.end(), [](const char *wish) { return !qEnvironmentVariableIsEmpty(wish); }))
        return false;
    // Most drivers make a render node; NVIDIA's own may have none, nor has the card of a Windows host.
    return !hasRenderNode(devices / "dri") && !isUsable(devices / "nvidiactl") && !isUsable(devices / "dxg");
}

} // namespace tolvenary
