// A counted pointer to one of the runtime's objects: the base of what callers hold.
#pragma once

#include <quay/zero/element_impl.h>

#include <compare>
#include <functional>
#include <utility>

namespace quay::zero {

/// A handle is as large as one pointer. Copying adds a reference; moving leaves the source empty; == compares identity.
class CountedHandle {
public:
    CountedHandle() noexcept = default;
    explicit CountedHandle(ElementImpl* impl) noexcept : impl_(impl) { addRef(); }
    CountedHandle(CountedHandle const& other) noexcept : impl_(other.impl_) { addRef(); }
    CountedHandle(CountedHandle&& other) noexcept : impl_(std::exchange(other.impl_, nullptr)) {}
    // The old object is released last, since destroying it may destroy `other`.
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

    /// Whether the handle isn't empty and its object wasn't destroyed.
    explicit operator bool() const noexcept { return impl_ != nullptr && impl_->isAlive(); }

    /// Adds or releases a reference to the object; nothing on an empty handle. Each addRef needs a removeRef.
    void addRef() const noexcept {
        if (impl_ != nullptr) impl_->addRef();
    }
    void removeRef() const noexcept {
        if (impl_ != nullptr) releaseOne(*impl_);
    }

    friend bool operator==(CountedHandle const& a, CountedHandle const& b) noexcept { return a.impl_ == b.impl_; }
    friend std::strong_ordering operator<=>(CountedHandle const& a, CountedHandle const& b) noexcept {
        return std::compare_three_way()(a.impl_, b.impl_);
    }

protected:
    ElementImpl* impl_ = nullptr;

private:
    static void releaseOne(ElementImpl const& e) noexcept {
        if (!e.dropShared()) e.removeRef();
    }
};

}  // namespace quay::zero
