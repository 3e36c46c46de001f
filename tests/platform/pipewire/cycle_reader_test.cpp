#include "platform/pipewire/cycle_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <spa/param/profiler.h>
#include <spa/pod/builder.h>

#include <array>

namespace tolvenary
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

enum Status : std::int32_t { notTriggered, triggered, awake, finished, inactive };

/// What the server tells, as it puts it together.
class Cycles
{
  public:
    Cycles()
    {
        spa_pod_builder_init(&m_builder, m_memory.data(), static_cast<std::uint32_t>(m_memory.size()));
        spa_pod_builder_push_struct(&m_builder, &m_all);
    }

    Cycles &begin()
    {
        spa_pod_builder_push_object(&m_builder, &m_cycle, SPA_TYPE_OBJECT_Profiler, 0);
        return *this;
    }
    Cycles &node(spa_profiler block, std::int32_t id, Status status)
    {
        spa_pod_frame frame{};
        spa_pod_builder_prop(&m_builder, block, 0);
        spa_pod_builder_push_struct(&m_builder, &frame);
        spa_pod_builder_int(&m_builder, id);
        spa_pod_builder_string(&m_builder, "name");
        for (std::int64_t time = 0; time < 4; ++time)
            spa_pod_builder_long(&m_builder, time);
        spa_pod_builder_int(&m_builder, status);
        spa_pod_builder_fraction(&m_builder, 1024, 48000);
        spa_pod_builder_pop(&m_builder, &frame);
        return *this;
    }
    Cycles &follower(std::int32_t id, Status status) { return node(SPA_PROFILER_followerBlock, id, status); }
    Cycles &text()
    {
        spa_pod_builder_prop(&m_builder, SPA_PROFILER_followerBlock, 0);
        spa_pod_builder_string(&m_builder, "no block");
        return *this;
    }
    Cycles &end()
    {
        spa_pod_builder_pop(&m_builder, &m_cycle);
        return *this;
    }

    std::map<GlobalId, bool> read()
    {
        std::map<GlobalId, bool> hasFinished;
        readFinished(static_cast<const spa_pod *>(spa_pod_builder_pop(&m_builder, &m_all)), hasFinished);
        return hasFinished;
    }

  private:
    alignas(8) std::array<std::uint8_t, 4096> m_memory{};
    spa_pod_builder m_builder{};
    spa_pod_frame m_all{};
    spa_pod_frame m_cycle{};
};

TEST(CycleReader, aFollowerHasFinishedOrIsStillAwaited)
{
    Cycles cycles;
    cycles.begin().follower(1, finished).follower(2, triggered).follower(3, awake).follower(4, notTriggered).end();
    EXPECT_THAT(cycles.read(), ElementsAre(Pair(1, true), Pair(2, false), Pair(3, false), Pair(4, false)));
}

TEST(CycleReader, nobodyWaitsForAnInactiveOne)
{
    Cycles cycles;
    cycles.begin().follower(1, inactive).end();
    EXPECT_THAT(cycles.read(), ElementsAre(Pair(1, true)));
}

TEST(CycleReader, theDriverIsNoFollower)
{
    Cycles cycles;
    cycles.begin().node(SPA_PROFILER_driverBlock, 9, triggered).follower(1, finished).end();
    EXPECT_THAT(cycles.read(), ElementsAre(Pair(1, true)));
}

TEST(CycleReader, ofSeveralCyclesTheLastCounts)
{
    Cycles cycles;
    cycles.begin().follower(1, triggered).follower(2, finished).end();
    cycles.begin().follower(1, finished).follower(2, awake).end();
    EXPECT_THAT(cycles.read(), ElementsAre(Pair(1, true), Pair(2, false)));
}

TEST(CycleReader, whatCannotBeReadIsLeftOut)
{
    Cycles cycles;
    cycles.begin().text().follower(1, triggered).end();
    EXPECT_THAT(cycles.read(), ElementsAre(Pair(1, false)));

    std::map<GlobalId, bool> hasFinished;
    const spa_pod none = SPA_POD_INIT_None();
    readFinished(&none, hasFinished);
    EXPECT_THAT(hasFinished, IsEmpty());
}

} // namespace
} // namespace tolvenary
