#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace tolvenary
{

template <typename Signature> class FunctionRef;

/// A callable borrowed for the length of a call: two words, never allocates. Not for keeping. real-time
template <typename R, typename... Args> class FunctionRef<R(Args...)>
{
  public:
    template <typename F>
    requires(!std::is_same_v<std::remove_cvref_t<F>, FunctionRef> && std::is_invocable_r_v<R, F &, Args...>)
        // NOLINTNEXTLINE(google-explicit-constructor, bugprone-forwarding-reference-overload): as std's
        FunctionRef(F &&callable)
        : m_callable(const_cast<void *>(static_cast<const void *>(std::addressof(callable)))),
          m_call([](void *target, Args... args) -> R {
              return (*static_cast<std::remove_reference_t<F> *>(target))(std::forward<Args>(args)...);
          })
    {
    }

    R operator()(Args... args) const { return m_call(m_callable, std::forward<Args>(args)...); }

  private:
    void *m_callable;
    R (*m_call)(void *, Args...);
};

} // namespace tolvenary
