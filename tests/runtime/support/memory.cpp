#include "memory.h"

#include <cstdlib>
#include <new>

namespace {

thread_local long allocations = 0;
thread_local long granted = -1;  // below 0: unlimited
thread_local bool staysOut = false;

void* allocate(std::size_t size) {
    ++allocations;
    if (granted == 0) {
        if (!staysOut) granted = -1;
        throw std::bad_alloc();
    }
    if (granted > 0) --granted;
    if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, std::nothrow_t const& /*tag*/) noexcept {
    try {
        return allocate(size);
    } catch (std::bad_alloc const&) {
        return nullptr;
    }
}
void operator delete(void* memory, std::nothrow_t const& /*tag*/) noexcept { std::free(memory); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace nodes {

AllocationCount::AllocationCount() : before_(allocations) {}
long AllocationCount::soFar() const { return allocations - before_; }

MemoryRunsOut::MemoryRunsOut(long count, bool forGood) {
    granted = count;
    staysOut = forGood;
}
MemoryRunsOut::~MemoryRunsOut() {
    granted = -1;
    staysOut = false;
}
bool MemoryRunsOut::happened() const { return granted < 0; }

}  // namespace nodes
