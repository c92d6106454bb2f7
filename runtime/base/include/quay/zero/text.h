// Values as readable text, and ids read back from it.
#pragma once

#include <keel/export.h>
#include <keel/text.h>

#include <algorithm>
#include <bit>
#include <boost/uuid/uuid.hpp>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace quay::zero {

using keel::toUtf16;

QUAY_ZERO_API std::u16string textOf(boost::uuids::uuid const& id);
QUAY_ZERO_API std::u16string textOf(int value);
QUAY_ZERO_API std::u16string textOf(double value);
/// The id given by 8-4-4-4-12 hexadecimal digits, in upper or lower case; none for any other text.
QUAY_ZERO_API std::optional<boost::uuids::uuid> idFrom(std::string_view text);
inline std::u16string textOf(std::u16string const& text) { return text; }
inline std::u16string textOf(std::string const& text) { return toUtf16(text); }

/// Whether `a` comes before `b` in the order of code units. Compares four units at a time, since the keys of a map
/// often have a long common beginning.
inline bool lessByUnit(std::u16string_view a, std::u16string_view b) noexcept {
    static_assert(std::endian::native == std::endian::little);
    std::size_t const common = std::min(a.size(), b.size());
    std::size_t i = 0;
    for (; i + 4 <= common; i += 4) {
        std::uint64_t x = 0;
        std::uint64_t y = 0;
        std::memcpy(&x, a.data() + i, sizeof x);
        std::memcpy(&y, b.data() + i, sizeof y);
        if (x == y) continue;
        int const unit = std::countr_zero(x ^ y) & ~15;
        return ((x >> unit) & 0xffff) < ((y >> unit) & 0xffff);
    }
    for (; i < common; ++i) {
        if (a[i] != b[i]) return a[i] < b[i];
    }
    return a.size() < b.size();
}

}  // namespace quay::zero
