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

/// Where Qt Quick looks for a user's wish; what a program asks for would prevail over it.
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
    // Most drivers make a render node; NVIDIA's own may stand without one, and so does a Windows host's card.
    return !hasRenderNode(devices / "dri") && !isUsable(devices / "nvidiactl") && !isUsable(devices / "dxg");
}

} // namespace tolvenary
