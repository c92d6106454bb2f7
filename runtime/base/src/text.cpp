#include <quay/zero/text.h>

#include <boost/uuid/uuid_io.hpp>
#include <charconv>

namespace quay::zero {

namespace {

template <class N>
std::u16string number(N value) {
    char buffer[32];
    auto const end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return {buffer, end};
}

int digitOf(char c) noexcept {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

std::u16string textOf(boost::uuids::uuid const& id) { return toUtf16(boost::uuids::to_string(id)); }

std::optional<boost::uuids::uuid> idFrom(std::string_view text) {
    if (text.size() != 36) return {};
    boost::uuids::uuid id{};
    std::size_t digits = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bool const isDash = i == 8 || i == 13 || i == 18 || i == 23;
        if (isDash != (text[i] == '-')) return {};
        if (isDash) continue;
        int const digit = digitOf(text[i]);
        if (digit < 0) return {};
        auto& byte = id.data[digits++ / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | digit);
    }
    return id;
}

std::u16string textOf(int value) { return number(value); }
std::u16string textOf(double value) { return number(value); }

}  // namespace quay::zero
