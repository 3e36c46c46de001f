#pragma once

#include "platform/error.h"

namespace tolvenary
{

/// The domain of failures that this program finds by itself, as opposed to those of platform operations.
inline constexpr const char *tolvenaryErrorDomain = "Tolvenary";

inline constexpr int microphoneDeniedInSettings = 10;
inline constexpr int microphoneRefused = 11;
inline constexpr int noMicrophoneInput = 12;
inline constexpr int screenRecordingDenied = 13;
inline constexpr int noOutputUnit = 20;
inline constexpr int outputDidNotSwitch = 21;

inline tl::unexpected<Error> tolvenaryFailure(int code, std::string description)
{
    return tl::unexpected(Error{tolvenaryErrorDomain, code, std::move(description)});
}

} // namespace tolvenary
