#include "scalars.h"

#include <keel/text.h>
#include <quay/zero/text.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <type_traits>

namespace quay::zero::io {

namespace {

template <class R>
using Bits = std::conditional_t<sizeof(R) == 8, std::uint64_t, std::uint32_t>;

template <class R>
constexpr R kPlainNan = std::numeric_limits<R>::quiet_NaN();

constexpr std::string_view kRealKey = "$real";
constexpr std::string_view kBytesKey = "$bytes";
constexpr char kDigits[] = "0123456789abcdef";

template <class N>
void appendHex(std::string& out, N value) {
    for (int shift = static_cast<int>(sizeof(N)) * 8 - 4; shift >= 0; shift -= 4)
        out.push_back(kDigits[(value >> shift) & 15U]);
}

/// Reads the digits that `appendHex` writes. Digits in upper case aren't read, so that each value has only one text.
template <class N>
bool parseHex(std::string_view digits, N& value) {
    value = 0;
    for (char const c : digits) {
        bool const isDigit = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
        if (!isDigit) return false;
        value = static_cast<N>(value << 4 | static_cast<N>(c <= '9' ? c - '0' : c - 'a' + 10));
    }
    return digits.size() == sizeof(N) * 2;
}

/// Reads units from the digits that `appendHexUnits` writes.
template <class Unit, class Text>
bool parseHexUnits(std::string_view digits, Text& text) {
    constexpr std::size_t kDigitsOfUnit = sizeof(Unit) * 2;
    text.clear();
    for (; digits.size() >= kDigitsOfUnit; digits.remove_prefix(kDigitsOfUnit)) {
        Unit unit = 0;
        if (!parseHex(digits.substr(0, kDigitsOfUnit), unit)) return false;
        text.push_back(static_cast<typename Text::value_type>(unit));
    }
    return digits.empty();
}

void appendEscape(std::string& out, std::string_view key, std::string_view text) {
    out.append("{\"").append(key).append("\":\"").append(text).append("\"}");
}

template <class Unit, class Text>
void appendHexUnits(std::string& out, std::string_view key, Text const& text) {
    std::string digits;
    for (auto const unit : text) appendHex(digits, static_cast<Unit>(unit));
    appendEscape(out, key, digits);
}

template <class R>
void appendAnyReal(std::string& out, R value) {
    if (!std::isfinite(value)) {
        auto const bits = std::bit_cast<Bits<R>>(value);
        std::string name = value > 0 ? "Infinity" : value < 0 ? "-Infinity" : "NaN";
        if (std::isnan(value) && bits != std::bit_cast<Bits<R>>(kPlainNan<R>)) {
            name = "0x";
            appendHex(name, bits);
        }
        appendEscape(out, kRealKey, name);
        return;
    }
    char buffer[40];
    char* const end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    out.append(buffer, end);
    // A reader that tells integers from other numbers would read "-0" as the integer 0, which has no sign.
    if (value == 0 && std::signbit(value)) out.append(".0");
}

template <class R>
bool parseSpecialReal(std::string_view name, R& value) {
    if (name == "NaN") {
        value = kPlainNan<R>;
    } else if (name == "Infinity" || name == "-Infinity") {
        value = name.front() == '-' ? -std::numeric_limits<R>::infinity() : std::numeric_limits<R>::infinity();
    } else {
        Bits<R> bits = 0;
        if (!name.starts_with("0x") || !parseHex(name.substr(2), bits)) return false;
        value = std::bit_cast<R>(bits);
        return std::isnan(value);
    }
    return true;
}

/// Reads a number that is too small for the type as 0. A number that is too large for it isn't read.
template <class R>
bool parseFiniteReal(std::string_view number, R& value) {
    char const* const end = number.data() + number.size();
    auto const [stop, error] = std::from_chars(number.data(), end, value);
    if (stop != end) return false;
    if (error != std::errc::result_out_of_range) return error == std::errc();
    std::size_t const exponent = number.find_first_of("eE");
    bool const isTiny = exponent != std::string_view::npos && number.substr(exponent + 1).starts_with('-');
    if (isTiny) value = number.front() == '-' ? R(-0.0) : R(0);
    return isTiny;
}

template <class R>
bool parseAnyReal(Node const& node, R& value) {
    if (Node const* const special = node.escape(kRealKey)) {
        return special->is(Node::Kind::Text) && parseSpecialReal(special->text, value);
    }
    return node.is(Node::Kind::Number) && parseFiniteReal(node.text, value);
}

bool isAscii(std::string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0x80U) == 0; });
}

}  // namespace

void appendReal(std::string& out, double value) { appendAnyReal(out, value); }
void appendReal(std::string& out, float value) { appendAnyReal(out, value); }
bool parseReal(Node const& node, double& value) { return parseAnyReal(node, value); }
bool parseReal(Node const& node, float& value) { return parseAnyReal(node, value); }

void appendQuoted(std::string& out, std::string_view utf8) {
    out.push_back('"');
    std::size_t done = 0;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        char const c = utf8[i];
        if (static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\') continue;
        out.append(utf8, done, i - done);
        done = i + 1;
        out.push_back('\\');
        switch (c) {
            case '\b':
                out.push_back('b');
                break;
            case '\f':
                out.push_back('f');
                break;
            case '\n':
                out.push_back('n');
                break;
            case '\r':
                out.push_back('r');
                break;
            case '\t':
                out.push_back('t');
                break;
            case '"':
            case '\\':
                out.push_back(c);
                break;
            default:
                out.push_back('u');
                appendHex(out, static_cast<std::uint16_t>(c));
        }
    }
    out.append(utf8, done);
    out.push_back('"');
}

void appendText(std::string& out, std::u16string_view text) {
    std::string const utf8 = keel::toUtf8(text);
    // Half a surrogate pair becomes U+FFFD in UTF-8, from which it doesn't come back.
    if (utf8.size() == text.size() || toUtf16(utf8) == text) {
        appendQuoted(out, utf8);
    } else {
        appendHexUnits<std::uint16_t>(out, kUtf16Key, text);
    }
}

void appendBytes(std::string& out, std::string_view bytes) {
    if (isAscii(bytes) || keel::toUtf8(toUtf16(bytes)) == bytes) {
        appendQuoted(out, bytes);
    } else {
        appendHexUnits<std::uint8_t>(out, kBytesKey, bytes);
    }
}

void appendKey(std::string& out, std::string_view name, bool isFirst) {
    if (!isFirst) out.push_back(',');
    appendQuoted(out, name);
    out.push_back(':');
}

bool parseText(Node const& node, std::u16string& text) {
    if (node.is(Node::Kind::Text)) {
        text = toUtf16(node.text);
        return true;
    }
    Node const* const escaped = node.escape(kUtf16Key);
    return escaped != nullptr && escaped->is(Node::Kind::Text) && parseHexUnits<std::uint16_t>(escaped->text, text);
}

bool parseBytes(Node const& node, std::string& bytes) {
    if (node.is(Node::Kind::Text)) {
        bytes = node.text;
        return true;
    }
    Node const* const escaped = node.escape(kBytesKey);
    return escaped != nullptr && escaped->is(Node::Kind::Text) && parseHexUnits<std::uint8_t>(escaped->text, bytes);
}

}  // namespace quay::zero::io
