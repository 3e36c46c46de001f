#pragma once

#include <optional>
#include <stdlib.h>
#include <string>

namespace tolvenary
{

/// An environment variable that has another value for a while.
class ScopedVariable
{
  public:
    ScopedVariable(const char *name, const std::string &value) : m_name(name)
    {
        if (const auto *old = getenv(name))
            m_old = old;
        setenv(name, value.c_str(), 1);
    }
    ~ScopedVariable()
    {
        if (m_old)
            setenv(m_name, m_old->c_str(), 1);
        else
            unsetenv(m_name);
    }
    ScopedVariable(const ScopedVariable &) = delete;
    ScopedVariable &operator=(const ScopedVariable &) = delete;

  private:
    const char *m_name;
    std::optional<std::string> m_old;
};

} // namespace tolvenary
