// Numbers and texts as JSON, exactly: what JSON can't hold stands in an escape object.
#pragma once

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

namespace quay::zero::io {

/// The keys of the escape objects.
inline constexpr std::string_view kRealKey = "$real";
inline constexpr std::string_view kUtf16Key = "$utf16";
inline constexpr std::string_view kBytesKey = "$bytes";
inline constexpr std::string_view kArrayKey = "$array";

template <class N>
void appendInteger(std::string& out, N value) {
    char buffer[24];
    out.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

/// The shortest number that reads back as the same one. What isn't finite is {"$real": "NaN"}, "Infinity", "-Infinity",
/// or for any other NaN its bits, "0x7ff8000000000001".
void appendReal(std::string& out, double value);
void appendReal(std::string& out, float value);

/// A JSON string of a text that is known to be UTF-8.
void appendQuoted(std::string& out, std::string_view utf8);

/// A JSON string, or {"$utf16": "d800"} with four hexadecimal digits a unit where a surrogate lacks its other half.
void appendText(std::string& out, std::u16string_view text);

/// A JSON string, or {"$bytes": "ff"} with two digits a byte for bytes that aren't UTF-8.
void appendBytes(std::string& out, std::string_view bytes);

// The other way. False if the text isn't such a one.
bool parseReal(std::string_view number, double& value);
bool parseReal(std::string_view number, float& value);
bool parseSpecialReal(std::string_view name, double& value);
bool parseSpecialReal(std::string_view name, float& value);
bool parseUtf16(std::string_view digits, std::u16string& text);
bool parseBytes(std::string_view digits, std::string& bytes);

template <class N>
bool parseInteger(std::string_view number, N& value) {
    char const* const end = number.data() + number.size();
    auto const [stop, error] = std::from_chars(number.data(), end, value);
    return error == std::errc() && stop == end;
}

}  // namespace quay::zero::io
