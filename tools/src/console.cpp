#include "console.h"

#include <unistd.h>

#include <boost/json/serialize.hpp>
#include <cstdlib>
#include <iostream>

#include "failure.h"

namespace modelref {

namespace {

bool wantsColours() {
    static bool const wants = [] {
        char const* const none = std::getenv("NO_COLOR");
        char const* const terminal = std::getenv("TERM");
        bool const isRefused = none != nullptr && *none != '\0';
        return !isRefused && terminal != nullptr && std::string_view(terminal) != "dumb" &&
               ::isatty(STDOUT_FILENO) == 1;
    }();
    return wants;
}

}  // namespace

std::string coloured(Colour colour, std::string_view text) {
    constexpr char const* codes[] = {"", "\033[2m", "\033[1m", "\033[31m", "\033[32m", "\033[33m", "\033[34m"};
    if (colour == Colour::Plain || !wantsColours()) return std::string(text);
    return std::string(codes[static_cast<int>(colour)]) + std::string(text) + "\033[0m";
}

void print(std::string_view text) { std::cout << text; }
void printLine(std::string_view text) { std::cout << text << '\n'; }
void printJson(boost::json::value const& value) { std::cout << boost::json::serialize(value) << '\n'; }
void note(std::string_view text) { std::cerr << text << '\n'; }

void finishOutput() {
    if (!std::cout.flush()) throw Failure("standard output can't be written");
}

}  // namespace modelref
