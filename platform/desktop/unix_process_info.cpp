#include "platform/desktop/unix_process_info.h"

#include <QUuid>
#include <unistd.h>

namespace tolvenary
{

std::int32_t UnixProcessInfo::processIdentifier()
{
    return getpid();
}

std::string UnixProcessInfo::makeUUIDString()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
}

} // namespace tolvenary
