// What every counted object of the runtime has: a reference count, an identity and a few flags.
#pragma once

#include <keel/export.h>

#include <sys/single_threaded.h>
#include <atomic>
#include <boost/uuid/uuid.hpp>
#include <cstdint>

namespace quay::zero {

class AbstractOwnedCollection;

/// Base of elements, meta objects and models. The count is atomic; everything else belongs to the thread that works
/// in the model.
class QUAY_ZERO_API ElementImpl {
public:
    /// The count of an object that is being deleted, by which an addRef that comes too late can be recognised.
    static constexpr std::uint32_t REFCOUNT_DELETING = 0x8000'0000;

    /// Called by ModelElement::Impl::invalidate with the element and each of its collections. A host sets it once, at
    /// start; it is read without synchronisation.
    using InvalidateCallback = void (*)(ElementImpl* element, AbstractOwnedCollection* collection);
    static InvalidateCallback m_callback;

    /// Draws a random (version 4) id. Any thread may call it.
    static boost::uuids::uuid generateNewUuid();

    ElementImpl(ElementImpl const&) = delete;
    ElementImpl& operator=(ElementImpl const&) = delete;

    void addRef() const noexcept { changeCount(1); }
    /// Releases one reference; the object is deleted with the last one.
    virtual void removeRef() const noexcept;
    /// Releases one reference without a virtual call, and returns true. If it is the last one, or the process has
    /// several threads, does nothing and returns false: the caller then calls removeRef.
    bool dropShared() const noexcept {
        if (!__libc_single_threaded) return false;
        std::uint32_t const count = count_.load(std::memory_order_relaxed);
        if (count < 2) return false;
        count_.store(count - 1, std::memory_order_relaxed);
        return true;
    }
    /// The number of references. For tests and tools only, since another thread may change it at any time.
    std::uint32_t refCount() const noexcept { return count_.load(std::memory_order_relaxed); }

    bool isAlive() const noexcept { return (flags_ & kAlive) != 0; }
    boost::uuids::uuid const& uuid() const noexcept { return id_; }

protected:
    static constexpr std::uint8_t kAlive = 1;
    static constexpr std::uint8_t kProxy = 2;
    static constexpr std::uint8_t kIndexed = 4;   // the model's id index holds it
    static constexpr std::uint8_t kListed = 8;    // it was entered in its model
    static constexpr std::uint8_t kClassed = 16;  // the model's index by class holds it
    static constexpr std::uint8_t kMissing = 64;  // the index by class lacks it, and has elements that come after it
    static constexpr std::uint8_t kReferenced = 128;  // a property refers, or referred, to it without containing it
    static constexpr std::uint8_t kOwns = 32;         // a child, or a proxy of one, has been in one of its properties

    explicit ElementImpl(boost::uuids::uuid const& id) noexcept : id_(id) {}
    virtual ~ElementImpl();

    /// Adds to the count and returns what it was before. While the process has only one thread, no atomic instruction
    /// is needed.
    std::uint32_t changeCount(std::uint32_t by) const noexcept {
        if (__libc_single_threaded) {
            std::uint32_t const before = count_.load(std::memory_order_relaxed);
            count_.store(before + by, std::memory_order_relaxed);
            return before;
        }
        return count_.fetch_add(by, std::memory_order_acq_rel);
    }

    void setFlag(std::uint8_t flag, bool on) noexcept {
        flags_ = static_cast<std::uint8_t>(on ? flags_ | flag : flags_ & ~flag);
    }

    // Count, flags and containment index share one word, which keeps the base of an element within 72 bytes.
    mutable std::atomic<std::uint32_t> count_{0};
    std::uint8_t flags_ = kAlive;
    std::uint16_t containmentIndex_ = 0;  // ModelElement::Impl: index of the property by which its container owns it
    boost::uuids::uuid id_;
};

}  // namespace quay::zero
