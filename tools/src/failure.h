// The failure of a command, and quoting of texts that come from files.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace modelref {

/// A failure that ends a command with exit code 2 and one line on standard error.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The number of bytes of the control character at the beginning of a text, which isn't empty; 0 if it begins with
/// another character.
std::size_t controlLength(std::string_view text) noexcept;

/// The text on one line: the bytes of control characters, which a terminal would interpret, are written as "\x0a".
std::string onOneLine(std::string_view text, std::string_view escape = "\\x");

/// A text in quotes for a message: on one line, and shortened.
std::string inQuotes(std::string_view text);

}  // namespace modelref
