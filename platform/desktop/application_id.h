#pragma once

#include <QString>

namespace tolvenary
{

/// The name under which the desktop knows the program.
inline QString applicationID()
{
    return QStringLiteral("com.tolvenary.app");
}

} // namespace tolvenary
