// What a command writes: results on standard output, all else on standard error.
#pragma once

#include <boost/json/fwd.hpp>

#include <string>
#include <string_view>

namespace modelref {

enum class Colour { Plain, Dim, Bold, Red, Green, Yellow, Blue };

/// The text in a colour, if standard output is a terminal that wants it.
std::string coloured(Colour colour, std::string_view text);

void print(std::string_view text);
void printLine(std::string_view text);
void printJson(boost::json::value const& value);
/// On standard error.
void note(std::string_view text);
/// Failure if what was printed couldn't be written.
void finishOutput();

}  // namespace modelref
