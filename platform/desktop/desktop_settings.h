#pragma once

#include <memory>

struct _GSettings; // NOLINT(bugprone-reserved-identifier): its library's own name

namespace tolvenary
{

struct CloseDesktopSettings {
    void operator()(_GSettings *settings) const;
};

using DesktopSettings = std::unique_ptr<_GSettings, CloseDesktopSettings>;

/// The desktop's settings of that schema; null where the schema, or the key that is wanted of it, is not installed.
/// Thread: any one.
DesktopSettings openDesktopSettings(const char *schemaName, const char *key);

} // namespace tolvenary
