// Counting of allocations, and allocations that fail on request. The test program's operator new calls this.
#pragma once

#include <new>

namespace nodes {

/// The number of this thread's allocations since the object was made.
class AllocationCount {
public:
    AllocationCount();
    long soFar() const;

private:
    long before_;
};

/// While it exists, this thread's next `granted` allocations succeed, the one after throws std::bad_alloc, and further
/// ones succeed. Objects of this class can't be nested.
class MemoryRunsOut {
public:
    /// `forGood`: all further ones fail as well.
    explicit MemoryRunsOut(long granted, bool forGood = false);
    ~MemoryRunsOut();
    /// Whether an allocation has failed.
    bool happened() const;
    MemoryRunsOut(MemoryRunsOut const&) = delete;
    MemoryRunsOut& operator=(MemoryRunsOut const&) = delete;
};

struct Starved {
    bool ranOut;
    bool failed;
};

/// Runs `f` with an allocation that fails after `granted` ones. Returns whether it did, and whether `f` failed because
/// of it.
template <class F>
Starved starve(long granted, F&& f) {
    MemoryRunsOut const memory(granted);
    try {
        f();
    } catch (std::bad_alloc const&) {
        return {true, true};
    }
    return {memory.happened(), false};
}

}  // namespace nodes
