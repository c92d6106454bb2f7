// Numbers as XML writes them.
#pragma once

#include <charconv>
#include <string>
#include <string_view>
#include <system_error>

namespace modelref::fmi {

/// The text without the white space around it.
std::string_view trimmed(std::string_view text);

// False if the text isn't such a value.
bool parseBoolean(std::string_view text, bool& value);
// Takes the C suffix "F" too, which some tools write. What is too small to tell from 0 is 0, with its sign; what is too
// large is no value.
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
