#pragma once

#include <cstdint>

namespace tolvenary::test
{

/// Counts what the calling thread takes from and gives back to the heap, in this program and in the libraries that it
/// uses, while the object lives.
class AllocationCounter
{
  public:
    AllocationCounter();
    ~AllocationCounter();
    AllocationCounter(const AllocationCounter &) = delete;
    AllocationCounter &operator=(const AllocationCounter &) = delete;

    std::uint64_t allocations() const;
    std::uint64_t frees() const;
};

} // namespace tolvenary::test
