#pragma once

#include "tests/session/tools/player_options.h"

#include <functional>
#include <span>
#include <utility>

struct pw_filter;
struct pw_loop;
struct spa_pod;

namespace tolvenary::session
{

/// A filter node with one port for each channel of the options. It runs from connect() to its end.
class ToolFilter
{
  public:
    /// real-time
    using Process = std::function<void(std::uint32_t frames, double rate)>;

    /// `properties` are the node's, besides its name.
    ToolFilter(pw_loop *loop, const PlayerOptions &options,
               const std::vector<std::pair<const char *, std::string>> &properties, Process process);
    ~ToolFilter();
    ToolFilter(const ToolFilter &) = delete;
    ToolFilter &operator=(const ToolFilter &) = delete;

    /// Ports "output_FL", … that play 32-bit float.
    void addOutputs();
    /// Ports "playback_FL", … that take what `params` say.
    void addInputs(std::span<const spa_pod *> params);
    /// Throws std::runtime_error when that fails.
    void connect();

    pw_filter *get() const { return m_filter; }
    const std::vector<void *> &ports() const { return m_ports; }

  private:
    const PlayerOptions &m_options;
    Process m_process;
    pw_filter *m_filter;
    std::vector<void *> m_ports;
};

} // namespace tolvenary::session
