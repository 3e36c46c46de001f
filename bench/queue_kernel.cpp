#include "bench/kernels.h"
#include "platform/audio/av_audio_pcm_buffer_pool.h"
#include "platform/audio/av_audio_player_node.h"

#include <readerwriterqueue/readerwriterqueue.h>
#include <stdexcept>

namespace tolvenary::bench
{

void benchQueue(Duels &duels)
{
    AVAudioPCMBufferPool pool(4, longestCycle * 8);
    SpscRing<ScheduledBuffer> ring(256);
    moodycamel::ReaderWriterQueue<ScheduledBuffer> other(256);
    ring.writer().push({pool.make(mixFormat(), 64), {}});
    other.try_enqueue({pool.make(mixFormat(), 64), {}});
    duels.fight(
        {.part = "Queue",
         .work = "pull a buffer and schedule one",
         .beside = "moodycamel readerwriterqueue",
         .mostRatio = 1.0},
        [&] {
            ScheduledBuffer pulled = ring.reader().pop();
            ring.writer().push(std::move(pulled));
        },
        [&] {
            ScheduledBuffer pulled;
            other.try_dequeue(pulled);
            other.try_enqueue(std::move(pulled));
        });
    if (pool.freeSlots() != 2 || ring.reader().size() != 1 || other.size_approx() != 1)
        throw std::runtime_error("a buffer got lost in a queue");
}

} // namespace tolvenary::bench
