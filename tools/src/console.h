// Output of commands: results go to standard output, everything else to standard error.
#pragma once

#include <boost/json/fwd.hpp>

#include <string>
#include <string_view>

namespace modelref {

enum class Colour { Plain, Dim, Bold, Red, Green, Yellow, Blue };

/// The text in a colour, if standard output is a terminal that supports it.
std::string coloured(Colour colour, std::string_view text);

void print(std::string_view text);
void printLine(std::string_view text);
void printJson(boost::json::value const& value);
/// Prints a line to standard error.
void note(std::string_view text);
/// Throws Failure if output couldn't be written.
void finishOutput();

}  // namespace modelref
