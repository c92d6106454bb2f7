// Names that are compared by their address.
#pragma once

#include <ordo/export.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace ordo {

class InternedName;

/// The one name of this text, from any thread. Takes a lock and a look-up: keep the result.
ORDO_API InternedName internName(std::string_view text);

/// A name of which the process keeps exactly one copy, or null, which is what an empty text becomes. Copying and
/// comparing one costs what a pointer costs. The text lives as long as the process.
class InternedName {
public:
    constexpr InternedName() noexcept = default;

    explicit operator bool() const noexcept { return text_ != nullptr; }
    /// Empty for null.
    std::string_view text() const noexcept { return text_ != nullptr ? std::string_view(*text_) : std::string_view(); }

    std::size_t hash() const noexcept { return std::hash<std::string const*>()(text_); }

    friend bool operator==(InternedName, InternedName) noexcept = default;

private:
    friend InternedName internName(std::string_view text);

    constexpr explicit InternedName(std::string const* text) noexcept : text_(text) {}

    std::string const* text_ = nullptr;
};

namespace internal {

inline InternedName makeInterned(std::string_view text) { return internName(text); }

}  // namespace internal
}  // namespace ordo

template <>
struct std::hash<ordo::InternedName> {
    std::size_t operator()(ordo::InternedName name) const noexcept { return name.hash(); }
};
