// How the command fails, and how it names things that come from files.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace modelref {

/// What ends a command with exit code 2 and one line on standard error.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// How many bytes at the beginning of a text, which isn't empty, are a control character; 0 if it begins with another.
std::size_t controlLength(std::string_view text) noexcept;

/// The text on one line: the bytes of control characters, which a terminal would obey, are written as "\x0a".
std::string onOneLine(std::string_view text, std::string_view escape = "\\x");

/// A text in quotes for a message: on one line, and shortened.
std::string inQuotes(std::string_view text);

}  // namespace modelref
