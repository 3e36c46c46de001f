#pragma once

#include <thread>
#include <vector>

namespace tolvenary::session
{

/// Keeps every processor busy with work of ordinary priority for as long as it lives.
class BusyLoops
{
  public:
    BusyLoops()
    {
        for (unsigned i = 0; i < std::thread::hardware_concurrency(); ++i) {
            m_threads.emplace_back([](const std::stop_token &stop) {
                volatile unsigned spins = 0;
                while (!stop.stop_requested())
                    spins = spins + 1;
            });
        }
    }

    std::size_t count() const { return m_threads.size(); }

  private:
    std::vector<std::jthread> m_threads;
};

} // namespace tolvenary::session
