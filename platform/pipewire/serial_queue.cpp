#include "platform/pipewire/serial_queue.h"

#include <utility>

namespace tolvenary
{

SerialQueue::SerialQueue(Look look) : m_look(std::move(look)), m_thread([this] { run(); }) {}

SerialQueue::~SerialQueue()
{
    {
        const std::lock_guard guard(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_one();
    m_thread.join();
}

void SerialQueue::async(std::function<void()> task)
{
    {
        const std::lock_guard guard(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    m_changed.notify_one();
}

void SerialQueue::run()
{
    const auto isCalled = [this] { return m_isEnding || !m_tasks.empty(); };
    std::unique_lock lock(m_mutex);
    for (;;) {
        runTasks(lock);
        if (m_isEnding)
            return;
        lock.unlock();
        const auto pause = m_look();
        lock.lock();
        if (pause)
            m_changed.wait_for(lock, *pause, isCalled);
        else
            m_changed.wait(lock, isCalled);
    }
}

void SerialQueue::runTasks(std::unique_lock<std::mutex> &lock)
{
    while (!m_tasks.empty()) {
        // What a task holds is released outside of the lock, too.
        std::optional task(std::move(m_tasks.front()));
        m_tasks.pop_front();
        lock.unlock();
        (*task)();
        task.reset();
        lock.lock();
    }
}

} // namespace tolvenary
