// Interned names, which are compared by their addresses.
#pragma once

#include <ordo/export.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace ordo {

class InternedName;
class OrdoClass;

/// The one interned name for this text. May be called from any thread. Costs a lock and a look-up, so keep the result.
ORDO_API InternedName internName(std::string_view text);

/// An interned name: the process keeps exactly one copy of each text. An empty text becomes null. Copying and comparing
/// cost what they cost for a pointer. The text lives as long as the process.
class InternedName {
public:
    constexpr InternedName() noexcept = default;

    explicit operator bool() const noexcept { return entry_ != nullptr; }
    /// Empty for null.
    std::string_view text() const noexcept { return entry_ != nullptr ? std::string_view(entry_->text) : ""; }

    std::size_t hash() const noexcept { return std::hash<void const*>()(entry_); }

    friend bool operator==(InternedName, InternedName) noexcept = default;

private:
    friend InternedName internName(std::string_view text);
    friend class LookupName;
    friend struct ClassTable;

    struct Table;

    /// The stored name, and the class that has it as its whole name.
    struct Entry {
        explicit Entry(std::string_view name) : text(name) {}

        std::string text;
        mutable OrdoClass* ordoClass = nullptr;
    };

    constexpr explicit InternedName(Entry const* entry) noexcept : entry_(entry) {}

    Entry const* entry_ = nullptr;
};

/// A name for looking a text up without keeping a copy of it for good: the interned name if there is one, otherwise a
/// name that differs from all others and is valid as long as this object. What keeps a name must intern its text.
class ORDO_API LookupName {
public:
    explicit LookupName(std::string_view text);
    LookupName(LookupName const&) = delete;
    LookupName& operator=(LookupName const&) = delete;

    operator InternedName() const noexcept { return name_; }  // NOLINT(google-explicit-constructor): it is one

private:
    std::optional<InternedName::Entry> own_;
    InternedName name_;
};

namespace internal {

inline InternedName makeInterned(std::string_view text) { return internName(text); }

}  // namespace internal
}  // namespace ordo

template <>
struct std::hash<ordo::InternedName> {
    std::size_t operator()(ordo::InternedName name) const noexcept { return name.hash(); }
};
