// A counted pointer to one of the runtime's objects: the base of what callers hold.
#pragma once

#include <quay/zero/element_impl.h>

#include <compare>
#include <functional>
#include <utility>

namespace quay::zero {

/// One pointer wide. Copying counts, moving leaves the source empty; comparing compares identity.
class CountedHandle {
public:
    CountedHandle() noexcept = default;
    explicit CountedHandle(ElementImpl* impl) noexcept : impl_(impl) { addRef(); }
    CountedHandle(CountedHandle const& other) noexcept : impl_(other.impl_) { addRef(); }
    CountedHandle(CountedHandle&& other) noexcept : impl_(std::exchange(other.impl_, nullptr)) {}
    // The handle has its new object before the old one goes, which may take `other` with it.
    CountedHandle& operator=(CountedHandle const& other) noexcept {
        CountedHandle copy(other);
        std::swap(impl_, copy.impl_);
        return *this;
    }
    CountedHandle& operator=(CountedHandle&& other) noexcept {
        CountedHandle taken(std::move(other));
        std::swap(impl_, taken.impl_);
        return *this;
    }
    ~CountedHandle() { removeRef(); }

    /// True for an object that lives: the handle isn't empty and the object wasn't destroyed.
    explicit operator bool() const noexcept { return impl_ != nullptr && impl_->isAlive(); }

    /// The object's two counting operations; nothing on an empty handle. Whoever adds a reference by hand drops it.
    void addRef() const noexcept {
        if (impl_ != nullptr) impl_->addRef();
    }
    void removeRef() const noexcept {
        if (impl_ != nullptr && !impl_->dropShared()) impl_->removeRef();
    }

    friend bool operator==(CountedHandle const& a, CountedHandle const& b) noexcept { return a.impl_ == b.impl_; }
    friend std::strong_ordering operator<=>(CountedHandle const& a, CountedHandle const& b) noexcept {
        return std::compare_three_way()(a.impl_, b.impl_);
    }

protected:
    ElementImpl* impl_ = nullptr;
};

}  // namespace quay::zero
