#pragma once

#include "platform/audio_server.h"
#include "platform/fake/fake_answer.h"
#include "platform/fake/fake_calls.h"

namespace tolvenary
{

class FakeAudioServer final : public AudioServer
{
  public:
    explicit FakeAudioServer(FakeCalls &calls) : m_calls(calls) {}

    void settle(std::function<void(bool answered)> done) override
    {
        m_calls.note("settle");
        answered.request(std::move(done));
    }

    AudioServerState state() override { return current; }

    FakeAnswer<bool> answered{true};
    AudioServerState current = AudioServerState::answers;

  private:
    FakeCalls &m_calls;
};

} // namespace tolvenary
