#pragma once

#include <QString>

namespace tolvenary
{

/// Under this name the desktop knows the program.
inline QString applicationID()
{
    return QStringLiteral("com.tolvenary.app");
}

} // namespace tolvenary
