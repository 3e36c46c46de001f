#include "platform/audio/tap_slot.h"

#include <thread>

namespace tolvenary
{

void TapSlot::install(const AVAudioFormat &format, Block block)
{
    remove();
    auto view = AVAudioPCMBuffer::makeView(format);
    if (view == nullptr)
        return;
    m_owned = std::make_unique<Tap>(Tap{std::move(view), std::move(block)});
    m_current.store(m_owned.get());
}

void TapSlot::remove()
{
    // Sequentially consistent, as in deliver(): either the capturing thread sees that the tap is gone, or this thread
    // sees that it is delivering, and waits for that one block.
    m_current.store(nullptr);
    while (m_delivering.load())
        std::this_thread::yield();
    m_owned.reset();
}

void TapSlot::deliver(const AudioTimeStamp &when, ConstPlanarBlock input)
{
    m_delivering.store(true);
    Tap *const tap = m_current.load();
    if (tap != nullptr && input.channels.size() >= tap->view->format().bufferCount()) {
        tap->view->setBorrowed(input.channels, input.frames);
        tap->block(*tap->view, when);
    }
    m_delivering.store(false);
}

} // namespace tolvenary
