// How the command fails.
#pragma once

#include <stdexcept>
#include <string>

namespace modelref {

/// What ends a command with exit code 2 and one line on standard error.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A text in quotes for a message: shortened, and without anything that could break the line.
std::string inQuotes(std::string const& text);

}  // namespace modelref
