#pragma once

#include "core/mix_coordinator.h"

namespace tolvenary
{

/// Every write is announced, as an observable object does; only a different value is a change.
template <typename T> void MixCoordinator::publish(T &field, T value, void (MixCoordinator::*changed)())
{
    Q_EMIT objectWillChange();
    if (field == value)
        return;
    field = std::move(value);
    Q_EMIT(this->*changed)();
}

} // namespace tolvenary
