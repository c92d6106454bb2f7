// Numbers and texts as JSON, without loss: what JSON can't hold is an object with one key, such as {"$real": "NaN"}.
#pragma once

#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>

#include "node.h"

namespace quay::zero::io {

/// The keys of the objects for UTF-16 that isn't well-formed, and for arrays.
inline constexpr std::string_view kUtf16Key = "$utf16";
inline constexpr std::string_view kArrayKey = "$array";

template <class N>
void appendInteger(std::string& out, N value) {
    char buffer[24];
    out.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

/// Appends the shortest number that reads back as the same one. A number that isn't finite becomes {"$real": "NaN"},
/// "Infinity" or "-Infinity", and a NaN other than the usual one its bits: "0x7ff8000000000001".
void appendReal(std::string& out, double value);
void appendReal(std::string& out, float value);

/// Appends a JSON string of a text that is known to be UTF-8.
void appendQuoted(std::string& out, std::string_view utf8);

/// Appends a JSON string, or {"$utf16": "d800"} with four hexadecimal digits for each unit if a surrogate lacks its
/// other half.
void appendText(std::string& out, std::u16string_view text);

/// Appends a JSON string, or {"$bytes": "ff"} with two hexadecimal digits for each byte if the bytes aren't UTF-8.
void appendBytes(std::string& out, std::string_view bytes);

/// Appends a list of what `append` appends for each number below `count`.
template <class F>
void appendList(std::string& out, std::size_t count, F&& append) {
    out.push_back('[');
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) out.push_back(',');
        append(i);
    }
    out.push_back(']');
}

/// Appends the key of an object's member, behind a comma unless the member is the first one.
void appendKey(std::string& out, std::string_view name, bool isFirst);

// Each function reads what the append function of the same name writes. False if the node isn't such a value.

bool parseReal(Node const& node, double& value);
bool parseReal(Node const& node, float& value);
bool parseText(Node const& node, std::u16string& text);
bool parseBytes(Node const& node, std::string& bytes);

template <class N>
bool parseInteger(Node const& node, N& value) {
    char const* const end = node.text.data() + node.text.size();
    auto const [stop, error] = std::from_chars(node.text.data(), end, value);
    return node.is(Node::Kind::Number) && error == std::errc() && stop == end;
}

}  // namespace quay::zero::io
