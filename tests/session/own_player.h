#pragma once

#include <memory>
#include <string>
#include <vector>

namespace tolvenary::session
{

/// Plays from within this very process, as node "own-player".
class OwnPlayer
{
  public:
    explicit OwnPlayer(const std::vector<std::string> &channels);
    ~OwnPlayer();

    OwnPlayer(const OwnPlayer &) = delete;
    OwnPlayer &operator=(const OwnPlayer &) = delete;

  private:
    struct Playing;
    std::unique_ptr<Playing> m_playing;
};

} // namespace tolvenary::session
