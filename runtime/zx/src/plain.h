// What numeric, logical and char arrays hold.
#pragma once

#include <zx/types.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <memory>

namespace zx {

/// Bytes of one real element; 0 if arrays of this class don't hold plain elements.
std::size_t sizeOfPlain(zxClassCode classCode);
bool isNumberClass(zxClassCode classCode);

/// The elements side by side, zero at first. Up to two numbers take no memory of their own.
class Plain {
public:
    /// Throws std::length_error if the bytes can't be counted.
    Plain(zxClassCode classCode, bool isComplex, std::size_t count);
    Plain(Plain const& other);
    Plain(Plain&&) = delete;
    Plain& operator=(Plain const&) = delete;
    Plain& operator=(Plain&&) = delete;
    ~Plain() = default;

    zxClassCode classCode() const { return classCode_; }
    bool isComplex() const { return isComplex_; }
    std::size_t elementSize() const { return sizeOfPlain(classCode_) * (isComplex_ ? 2 : 1); }
    std::size_t size() const { return size_; }
    std::byte const* bytes() const { return memory_ != nullptr ? memory_.get() : few_.data(); }
    std::byte* bytes() { return memory_ != nullptr ? memory_.get() : few_.data(); }

    bool equals(Plain const& other, zxNanRule nans) const;

private:
    struct Free {
        void operator()(std::byte* memory) const { std::free(memory); }
    };

    zxClassCode classCode_;
    bool isComplex_;
    std::size_t size_;  // in bytes
    alignas(std::max_align_t) std::array<std::byte, 16> few_{};
    std::unique_ptr<std::byte, Free> memory_;
};

}  // namespace zx
