#pragma once

#include <functional>
#include <utility>
#include <vector>

namespace tolvenary
{

/// The answer to an asynchronous request: given at once, or held back until somebody delivers it, on whichever thread
/// that is. Must not be asked while it is being delivered.
template <typename T> class FakeAnswer
{
  public:
    explicit FakeAnswer(T value) : m_value(std::move(value)) {}

    void set(T value) { m_value = std::move(value); }

    /// From now on requests wait for deliver().
    void holdBack() { m_held = true; }

    /// Answers all that wait, on the calling thread.
    void deliver()
    {
        for (const auto &handler : std::exchange(m_waiting, {}))
            handler(m_value);
    }
    /// Answers the one that asked last.
    void deliverLast()
    {
        const auto handler = std::move(m_waiting.back());
        m_waiting.pop_back();
        handler(m_value);
    }
    std::size_t waiting() const { return m_waiting.size(); }

    /// For the fakes.
    void request(std::function<void(T)> handler)
    {
        if (m_held)
            m_waiting.push_back(std::move(handler));
        else
            handler(m_value);
    }

  private:
    T m_value;
    bool m_held = false;
    std::vector<std::function<void(T)>> m_waiting;
};

} // namespace tolvenary
