#include <ordo/factory/encoding.h>
#include <ordo/failure.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace ordo::factory {
namespace {

constexpr char16_t escapedByte = 0xDC00;

/// Decodes the well-formed UTF-8 sequence at the start of `bytes`; returns its length, 0 if there is none.
std::size_t decode(std::string_view bytes, char32_t& character) {
    auto const at = [&](std::size_t index) { return static_cast<unsigned char>(bytes[index]); };
    unsigned char const lead = at(0);
    std::size_t const length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length == 0 || length > bytes.size()) {
        return 0;
    }
    character = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((at(i) & 0xC0U) != 0x80) {
            return 0;
        }
        character = character << 6U | (at(i) & 0x3FU);
    }
    bool const overlong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
    bool const surrogate = character >= 0xD800 && character < 0xE000;
    return overlong || surrogate || character > 0x10FFFF ? 0 : length;
}

void encode(char32_t character, std::string& result) {
    if (character < 0x80) {
        result += static_cast<char>(character);
        return;
    }
    unsigned const following = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    unsigned const lead = (0xFF00U >> (following + 1) & 0xFFU) | (character >> 6U * following);
    result += static_cast<char>(lead);
    for (unsigned i = following; i-- > 0;) {
        result += static_cast<char>(0x80U | (character >> 6U * i & 0x3FU));
    }
}

bool isHigh(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLow(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

}  // namespace

std::u16string unitsOf(std::string_view bytes) {
    // Fast path: most texts are ASCII, at least in their first part.
    auto const end = std::find_if(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; });
    std::u16string result(bytes.begin(), end);
    bytes.remove_prefix(result.size());
    result.reserve(result.size() + bytes.size());
    while (!bytes.empty()) {
        char32_t character = 0;
        std::size_t const length = decode(bytes, character);
        if (length == 0) {
            result += static_cast<char16_t>(escapedByte + static_cast<unsigned char>(bytes[0]));
            bytes.remove_prefix(1);
            continue;
        }
        if (character < 0x10000) {
            result += static_cast<char16_t>(character);
        } else {
            result += static_cast<char16_t>(0xD7C0 + (character >> 10U));
            result += static_cast<char16_t>(0xDC00 + (character & 0x3FFU));
        }
        bytes.remove_prefix(length);
    }
    return result;
}

std::string bytesOf(std::u16string_view units) {
    std::string result;
    result.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t const unit = units[i];
        if (isHigh(unit) && i + 1 < units.size() && isLow(units[i + 1])) {
            encode(0x10000 + ((unit - 0xD800) << 10U) + (units[++i] - 0xDC00U), result);
        } else if (unit >= escapedByte + 0x80U && unit <= escapedByte + 0xFFU) {
            result += static_cast<char>(unit - escapedByte);
        } else if (isHigh(unit) || isLow(unit)) {
            char name[8];
            std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(unit));
            raise(failures::NotEncodable, {unitsOf(name)});
        } else {
            encode(unit, result);
        }
    }
    return result;
}

}  // namespace ordo::factory
