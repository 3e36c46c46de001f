#pragma once

#include "capture/process_audio_tap.h"
#include "platform/fake/fake_platform.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <span>
#include <vector>

namespace tolvenary::test
{

inline constexpr std::int32_t ownPID = 4242;

/// A tap on a fake system, and what it delivered.
class TapTest : public testing::Test
{
  protected:
    Result<std::unique_ptr<ProcessAudioTap>> create(const std::vector<std::int32_t> &excludePIDs = {ownPID})
    {
        return ProcessAudioTap::create(
            m_platform, m_pool, excludePIDs, standardFormat(),
            [this](AVAudioPCMBufferPtr buffer) { m_delivered.push_back(std::move(buffer)); });
    }

    FakeCalls &calls() { return m_platform.calls(); }
    FakeObjects &objects() { return m_platform.objects(); }

    FakePlatform m_platform;
    AVAudioPCMBufferPool m_pool{8, 65536};
    std::vector<AVAudioPCMBufferPtr> m_delivered;
};

} // namespace tolvenary::test
