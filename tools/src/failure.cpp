#include "failure.h"

namespace modelref {

std::string inQuotes(std::string const& text) {
    constexpr std::size_t kLongest = 80;
    std::string result = "'";
    for (char const c : text.substr(0, kLongest)) {
        bool const isControl = static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
        result.push_back(isControl ? ' ' : c);
    }
    return result + (text.size() > kLongest ? "...'" : "'");
}

}  // namespace modelref
