#pragma once

#include "platform/os_status.h"

#include <string>
#include <tl/expected.hpp>

namespace tolvenary
{

/// A failure as the user may meet it: whose it is, which one, and what to do about it.
struct Error {
    std::string domain;
    int code = 0;
    std::string localizedDescription;

    friend bool operator==(const Error &, const Error &) = default;
};

/// The domain of a failed platform operation; the code is the status it returned.
inline constexpr const char *NSOSStatusErrorDomain = "NSOSStatusErrorDomain";

/// A value, or the reason why there is none. Stands in for std::expected until C++23.
template <typename T> using Result = tl::expected<T, Error>;

/// The failure of a platform operation; `description` is shown to the user as it stands.
inline tl::unexpected<Error> failure(OSStatus status, std::string description)
{
    return tl::unexpected(Error{NSOSStatusErrorDomain, status, std::move(description)});
}

} // namespace tolvenary
