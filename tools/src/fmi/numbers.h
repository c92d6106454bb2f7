// Parsing of numbers and truth values in XML.
#pragma once

#include <charconv>
#include <string>
#include <string_view>
#include <system_error>

namespace modelref::fmi {

/// The text without leading and trailing white space.
std::string_view trimmed(std::string_view text);

// These functions return false if the text isn't such a value.
bool parseBoolean(std::string_view text, bool& value);
// Accepts the C suffix "F" too, which some tools write. A number too small to tell from 0 becomes 0, with its sign; a
// number that is too large is refused.
bool parseReal(std::string_view text, double& value);
bool parseReal(std::string_view text, float& value);

template <class N>
bool parseInteger(std::string_view text, N& value) {
    text = trimmed(text);
    if (text.starts_with('+') && !text.substr(1).starts_with('-')) text.remove_prefix(1);
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

}  // namespace modelref::fmi
