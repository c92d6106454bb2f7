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

}  // namespace

std::u16string textOf(boost::uuids::uuid const& id) { return toUtf16(boost::uuids::to_string(id)); }
std::u16string textOf(int value) { return number(value); }
std::u16string textOf(double value) { return number(value); }

}  // namespace quay::zero
