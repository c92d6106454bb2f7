#include <quay/zero/text.h>

#include <boost/uuid/uuid_io.hpp>
#include <charconv>

namespace quay::zero {

namespace {

constexpr char32_t kReplacement = 0xfffd;

/// The code point that begins at `text`, and how many units it takes; one unit of U+FFFD for what isn't UTF-8.
std::pair<char32_t, std::size_t> decode(std::string_view text) {
    auto const unit = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    unsigned char const lead = unit(0);
    if (lead < 0x80) return {lead, 1};
    std::size_t const length = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
    if (lead < 0xc2 || lead > 0xf4 || text.size() < length) return {kReplacement, 1};
    char32_t point = lead & (0xff >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((unit(i) & 0xc0) != 0x80) return {kReplacement, 1};
        point = (point << 6) | (unit(i) & 0x3f);
    }
    constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    bool const valid = point >= least[length] && point <= 0x10ffff && (point < 0xd800 || point > 0xdfff);
    return valid ? std::pair{point, length} : std::pair{kReplacement, std::size_t{1}};
}

template <class N>
std::u16string number(N value) {
    char buffer[32];
    auto const end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return {buffer, end};
}

}  // namespace

std::u16string toUtf16(std::string_view text) {
    std::u16string result;
    result.reserve(text.size());
    while (!text.empty()) {
        auto const [point, length] = decode(text);
        text.remove_prefix(length);
        if (point < 0x10000) {
            result.push_back(static_cast<char16_t>(point));
        } else {
            result.push_back(static_cast<char16_t>(0xd7c0 + (point >> 10)));
            result.push_back(static_cast<char16_t>(0xdc00 + (point & 0x3ff)));
        }
    }
    return result;
}

std::u16string textOf(boost::uuids::uuid const& id) { return toUtf16(boost::uuids::to_string(id)); }
std::u16string textOf(int value) { return number(value); }
std::u16string textOf(double value) { return number(value); }

}  // namespace quay::zero
