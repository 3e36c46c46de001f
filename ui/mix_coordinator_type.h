#pragma once

#include "core/mix_coordinator.h"

#include <QtQml/qqmlregistration.h>

namespace tolvenary
{

/// Makes the coordinator known to the panel by its type, so that every binding on it is checked when it is built.
struct MixCoordinatorType {
    Q_GADGET
    QML_FOREIGN(tolvenary::MixCoordinator)
    QML_NAMED_ELEMENT(MixCoordinator)
    QML_UNCREATABLE("there is one, made by the application")
};

} // namespace tolvenary
