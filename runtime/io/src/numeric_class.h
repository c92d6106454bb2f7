// The classes of arrays whose elements are numbers, by name and as C++ types.
#pragma once

#include <zx/values.h>

#include <cstdint>
#include <string_view>

namespace quay::zero::io {

/// Calls `f` with a value of the C++ type whose numbers an array of that class has. False if the class isn't one of
/// numbers.
template <class F>
bool withNumberType(zxClassCode code, F&& f) {
    // NOLINTNEXTLINE(bugprone-branch-clone): each branch calls f with another type
    switch (code) {
        case zxDoubleClass:
            f(double());
            return true;
        case zxSingleClass:
            f(float());
            return true;
        case zxInt8Class:
            f(std::int8_t());
            return true;
        case zxUint8Class:
            f(std::uint8_t());
            return true;
        case zxInt16Class:
            f(std::int16_t());
            return true;
        case zxUint16Class:
            f(std::uint16_t());
            return true;
        case zxInt32Class:
            f(std::int32_t());
            return true;
        case zxUint32Class:
            f(std::uint32_t());
            return true;
        case zxInt64Class:
            f(std::int64_t());
            return true;
        case zxUint64Class:
            f(std::uint64_t());
            return true;
        default:
            return false;
    }
}

/// The class of numbers that has that name, or the class of cell arrays if there is none.
inline zxClassCode numberClass(std::string_view name) noexcept {
    constexpr std::string_view names[] = {"double", "single", "int8",   "uint8", "int16",
                                          "uint16", "int32",  "uint32", "int64", "uint64"};
    for (std::size_t i = 0; i < std::size(names); ++i) {
        if (names[i] == name) return static_cast<zxClassCode>(zxDoubleClass + i);
    }
    return zxCellClass;
}

}  // namespace quay::zero::io
