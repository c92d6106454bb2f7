// The field of a property whose value is an array.
#pragma once

#include <zx/array.h>
#include <zx/property_array.h>

#include <cstdint>
#include <memory>

namespace quay::zero {

/// Holds a copy of one array, or null. It remembers from which array, and from which state of it, it was copied, so
/// that it can tell whether the same array is given again.
class ArrayHolder {
public:
    ArrayHolder() noexcept = default;
    /// Copies `source`, which may be null.
    explicit ArrayHolder(zxArray_tag const* source)
        : array_(omCopyArrayForPropertyContainment(source)),
          source_(source),
          sourceSerial_(source != nullptr ? zx::serialOf(source) : 0) {}

    /// A deep copy, with the same source.
    ArrayHolder(ArrayHolder const& other)
        : array_(omCopyArrayForPropertyContainment(other.get())),
          source_(other.source_),
          sourceSerial_(other.sourceSerial_) {}
    ArrayHolder(ArrayHolder&&) noexcept = default;
    ArrayHolder& operator=(ArrayHolder const& other) {
        if (this != &other) {
            *this = ArrayHolder(other);
        }
        return *this;
    }
    ArrayHolder& operator=(ArrayHolder&&) noexcept = default;
    ~ArrayHolder() = default;

    zxArray_tag const* get() const noexcept { return array_.get(); }

    /// Whether a copy of `candidate` would only bring what is held already: both are null, it is the held
    /// array itself, or it is the one that was copied and hasn't been written since. A new array at a former
    /// one's address has another serial and is never taken for it. `candidate` is null or alive; contents
    /// aren't looked at.
    bool isSameAs(zxArray_tag const* candidate) const {
        if (candidate == array_.get()) {
            return true;
        }
        return array_ != nullptr && candidate != nullptr && candidate == source_ &&
               zx::serialOf(candidate) == sourceSerial_;
    }

    /// Identity: two copies of one array aren't equal, two nulls are.
    friend bool operator==(ArrayHolder const& left, ArrayHolder const& right) noexcept {
        return left.get() == right.get();
    }

private:
    struct Delete {
        void operator()(zxArray_tag* array) const noexcept { ordo::property_array_deleter(array); }
    };

    std::unique_ptr<zxArray_tag, Delete> array_;
    zxArray_tag const* source_ = nullptr;  // only ever compared
    std::uint64_t sourceSerial_ = 0;
};

}  // namespace quay::zero
