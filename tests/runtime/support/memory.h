// Memory that is counted, and that can run out where a test wants it to. The test program's operator new serves this.
#pragma once

#include <new>

namespace nodes {

/// How often this thread asked for memory since this object was made.
class AllocationCount {
public:
    AllocationCount();
    long soFar() const;

private:
    long before_;
};

/// While it lives, this thread gets memory `granted` times, then std::bad_alloc once, then memory again. They don't
/// nest.
class MemoryRunsOut {
public:
    explicit MemoryRunsOut(long granted);
    ~MemoryRunsOut();
    /// Whether it has run out.
    bool happened() const;
    MemoryRunsOut(MemoryRunsOut const&) = delete;
    MemoryRunsOut& operator=(MemoryRunsOut const&) = delete;
};

struct Starved {
    bool ranOut;
    bool failed;
};

/// Runs `f` with memory that runs out after `granted` times. Whether it did, and whether `f` failed for it.
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
