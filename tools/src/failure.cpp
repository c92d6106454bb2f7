#include "failure.h"

#include <algorithm>

namespace modelref {

std::size_t controlLength(std::string_view text) noexcept {
    auto const byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    if (byte(0) < 0x20 || byte(0) == 0x7f) return 1;
    // The control characters U+0080 to U+009F, in UTF-8.
    return byte(0) == 0xc2 && text.size() > 1 && byte(1) >= 0x80 && byte(1) < 0xa0 ? 2 : 0;
}

std::string onOneLine(std::string_view text, std::string_view escape) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string result;
    for (std::size_t i = 0, controls = 0; i < text.size(); ++i) {
        if (controls == 0) controls = controlLength(text.substr(i));
        if (controls == 0) {
            result += text[i];
            continue;
        }
        --controls;
        auto const byte = static_cast<unsigned char>(text[i]);
        result.append(escape).append({kDigits[byte >> 4], kDigits[byte & 15]});
    }
    return result;
}

std::string inQuotes(std::string_view text) {
    constexpr std::size_t kLongest = 80;
    std::size_t end = std::min(text.size(), kLongest);
    // Don't cut in the middle of a character.
    while (end > 0 && end < text.size() && (static_cast<unsigned char>(text[end]) & 0xc0U) == 0x80) --end;
    return "'" + onOneLine(text.substr(0, end)) + (end < text.size() ? "...'" : "'");
}

}  // namespace modelref
