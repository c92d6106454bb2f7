#include "numbers.h"

#include <algorithm>
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

/// Takes the C suffix "F" too, which some tools write.
bool parseReal(std::string_view text, double& value) {
    text = trimmed(text);
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    if (text == "INF" || text == "+INF" || text == "-INF") {
        value = text.front() == '-' ? -kInfinity : kInfinity;
        return true;
    }
    if (text == "NaN") {
        value = std::numeric_limits<double>::quiet_NaN();
        return true;
    }
    if (text.starts_with('+') && !text.substr(1).starts_with('-')) text.remove_prefix(1);
    if (text.ends_with('F') || text.ends_with('f')) text.remove_suffix(1);
    bool const isPlain = text.find_first_not_of("0123456789+-.eE") == std::string_view::npos;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return isPlain && error == std::errc() && end == text.data() + text.size();
}

}  // namespace modelref::fmi
