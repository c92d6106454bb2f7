#include "numbers.h"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace modelref::fmi {

std::string_view trimmed(std::string_view text) {
    constexpr char kSpace[] = " \t\r\n";
    std::size_t const begin = text.find_first_not_of(kSpace);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(kSpace) - begin + 1);
}

bool parseBoolean(std::string_view text, bool& value) {
    text = trimmed(text);
    value = text == "true" || text == "1";
    return value || text == "false" || text == "0";
}

namespace {

double nearest(char const* text, double) { return std::strtod(text, nullptr); }
float nearest(char const* text, float) { return std::strtof(text, nullptr); }

template <class R>
bool parseAnyReal(std::string_view text, R& value) {
    text = trimmed(text);
    constexpr R kInfinity = std::numeric_limits<R>::infinity();
    if (text == "INF" || text == "+INF" || text == "-INF") {
        value = text.front() == '-' ? -kInfinity : kInfinity;
        return true;
    }
    if (text == "NaN") {
        value = std::numeric_limits<R>::quiet_NaN();
        return true;
    }
    if (text.starts_with('+') && !text.substr(1).starts_with('-')) text.remove_prefix(1);
    if (text.ends_with('F') || text.ends_with('f')) text.remove_suffix(1);
    bool const isPlain = text.find_first_not_of("0123456789+-.eE") == std::string_view::npos;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (!isPlain || end != text.data() + text.size()) return false;
    if (error == std::errc::result_out_of_range) value = nearest(std::string(text).c_str(), R());
    return error != std::errc::invalid_argument && std::isfinite(value);
}

}  // namespace

bool parseReal(std::string_view text, double& value) { return parseAnyReal(text, value); }
bool parseReal(std::string_view text, float& value) { return parseAnyReal(text, value); }

}  // namespace modelref::fmi
