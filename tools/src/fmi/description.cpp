#include "description.h"

#include <algorithm>

namespace modelref::fmi {

std::uint64_t Variable::width() const noexcept {
    std::uint64_t product = 1;
    for (Dimension const& dimension : dimensions) product *= dimension.size;
    return product;
}

bool InterfaceKind::has(std::string const& flag) const {
    return std::any_of(attributes.begin(), attributes.end(),
                       [&](auto const& a) { return a.first == flag && (a.second == "true" || a.second == "1"); });
}

InterfaceKind const* Description::kind(std::string const& name) const noexcept {
    auto const found = std::find_if(kinds.begin(), kinds.end(), [&](auto const& k) { return k.name == name; });
    return found == kinds.end() ? nullptr : &*found;
}

char const* nameOf(Type type) noexcept {
    constexpr char const* names[] = {"double",  "single", "int8",   "uint8",       "int16",
                                     "uint16",  "int32",  "uint32", "int64",       "uint64",
                                     "boolean", "string", "binary", "enumeration", "clock"};
    return names[static_cast<int>(type)];
}

bool isReal(Type type) noexcept { return type == Type::Float64 || type == Type::Float32; }
bool isNumber(Type type) noexcept { return type <= Type::UInt64; }

}  // namespace modelref::fmi
