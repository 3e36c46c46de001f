#pragma once

#include <atomic>
#include <bit>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace tolvenary
{

/// A bounded queue between exactly two threads, wait-free on both sides. What one thread may do is a type of its own:
/// hand the writer to one, the reader to the other. The constructor allocates all memory.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): what each thread writes is kept apart on purpose
template <typename T> class SpscRing
{
  public:
    /// Holds at least `capacity` items.
    explicit SpscRing(std::size_t capacity)
        : m_slots(std::bit_ceil(capacity)), m_mask(m_slots.size() - 1), m_writer(*this), m_reader(*this)
    {
    }

    SpscRing(const SpscRing &) = delete;
    SpscRing &operator=(const SpscRing &) = delete;

    class Writer
    {
      public:
        /// Takes `item` and returns true, or leaves it alone and returns false if the ring is full. real-time
        bool push(T &&item)
        {
            const std::size_t end = m_ring.m_end.load(std::memory_order_relaxed);
            if (end - m_ring.m_knownBegin == m_ring.m_slots.size()) {
                m_ring.m_knownBegin = m_ring.m_begin.load(std::memory_order_acquire);
                if (end - m_ring.m_knownBegin == m_ring.m_slots.size())
                    return false;
            }
            m_ring.m_slots[end & m_ring.m_mask].emplace(std::move(item));
            m_ring.m_end.store(end + 1, std::memory_order_release);
            return true;
        }

      private:
        friend class SpscRing;
        explicit Writer(SpscRing &ring) : m_ring(ring) {}
        SpscRing &m_ring;
    };

    class Reader
    {
      public:
        /// Items that can be read now; the writer may add more at any moment. real-time
        std::size_t size() const
        {
            return m_ring.m_end.load(std::memory_order_acquire) - m_ring.m_begin.load(std::memory_order_relaxed);
        }

        /// The item `index` places behind the front, index < size(). real-time
        const T &operator[](std::size_t index) const
        {
            return *m_ring.m_slots[(m_ring.m_begin.load(std::memory_order_relaxed) + index) & m_ring.m_mask];
        }

        /// Takes the front item; size() > 0. real-time
        T pop()
        {
            const std::size_t begin = m_ring.m_begin.load(std::memory_order_relaxed);
            std::optional<T> &slot = m_ring.m_slots[begin & m_ring.m_mask];
            T item = std::move(*slot);
            slot.reset();
            m_ring.m_begin.store(begin + 1, std::memory_order_release);
            return item;
        }

      private:
        friend class SpscRing;
        explicit Reader(SpscRing &ring) : m_ring(ring) {}
        SpscRing &m_ring;
    };

    Writer &writer() { return m_writer; }
    Reader &reader() { return m_reader; }

  private:
    std::vector<std::optional<T>> m_slots;
    std::size_t m_mask;
    Writer m_writer;
    Reader m_reader;
    // On lines of their own, so that the two threads do not fight over one.
    alignas(64) std::atomic<std::size_t> m_end{0};   ///< items ever written
    std::size_t m_knownBegin = 0;                    ///< the reader's count when the writer last had to look
    alignas(64) std::atomic<std::size_t> m_begin{0}; ///< items ever read
};

} // namespace tolvenary
