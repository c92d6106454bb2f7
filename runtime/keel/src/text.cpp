#include <keel/text.h>

#include <cstddef>
#include <cstdint>

namespace keel {
namespace {

constexpr char32_t replacementCharacter = 0xFFFD;

bool isHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void append(std::string& out, char32_t code) {
    auto const tail = [&](unsigned shift) { out += static_cast<char>(0x80U | ((code >> shift) & 0x3FU)); };
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0U | (code >> 6U));
        tail(0);
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0U | (code >> 12U));
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xF0U | (code >> 18U));
        tail(12);
        tail(6);
        tail(0);
    }
}

void append(std::u16string& out, char32_t code) {
    if (code < 0x10000) {
        out += static_cast<char16_t>(code);
    } else {
        out += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10U));
        out += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FFU));
    }
}

// What the first byte of a character tells: its bits of the code, the number of bytes that follow, and the bounds of
// the next byte, which exclude overlong forms, surrogates and codes that are too large.
struct Lead {
    char32_t bits = 0;
    int following = -1;  // -1: the byte can't begin a character
    std::uint8_t lowest = 0x80;
    std::uint8_t highest = 0xBF;
};

Lead leadOf(std::uint8_t byte) {
    if (byte < 0x80) {
        return {byte, 0};
    }
    if (byte >= 0xC2 && byte <= 0xDF) {
        return {byte & 0x1FU, 1};
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
        return {byte & 0x0FU, 2, static_cast<std::uint8_t>(byte == 0xE0 ? 0xA0 : 0x80),
                static_cast<std::uint8_t>(byte == 0xED ? 0x9F : 0xBF)};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        return {byte & 0x07U, 3, static_cast<std::uint8_t>(byte == 0xF0 ? 0x90 : 0x80),
                static_cast<std::uint8_t>(byte == 0xF4 ? 0x8F : 0xBF)};
    }
    return {};
}

}  // namespace

std::string toUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char16_t const unit = text[i];
        if (isHighSurrogate(unit) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
            ++i;
            append(out, 0x10000U + ((unit - 0xD800U) << 10U) + (text[i] - 0xDC00U));
        } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
            append(out, replacementCharacter);
        } else {
            append(out, unit);
        }
    }
    return out;
}

std::u16string toUtf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        Lead lead = leadOf(static_cast<std::uint8_t>(text[i++]));
        char32_t code = lead.bits;
        for (; lead.following > 0 && i < text.size(); --lead.following, ++i) {
            auto const byte = static_cast<std::uint8_t>(text[i]);
            if (byte < lead.lowest || byte > lead.highest) {
                break;
            }
            code = (code << 6U) | (byte & 0x3FU);
            lead.lowest = 0x80;
            lead.highest = 0xBF;
        }
        append(out, lead.following == 0 ? code : replacementCharacter);
    }
    return out;
}

}  // namespace keel
