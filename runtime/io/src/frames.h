// What a loader knows of each object and list of a text that is open, outermost first: one struct for each kind.
#pragma once

#include <quay/zero/model_element.h>

#include <array>
#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "failures.h"
#include "forms.h"

namespace quay::zero::io {

enum class DocumentKey : std::uint8_t { Roots, Schema, Version };
enum class ElementKey : std::uint8_t { Class, Id, Ref, Values };

/// The names of keys in the order of their enumeration.
template <class Key>
constexpr std::array<std::string_view, 0> kKeyNames{};
template <>
inline constexpr std::array<std::string_view, 3> kKeyNames<DocumentKey>{"roots", "schema", "version"};
template <>
inline constexpr std::array<std::string_view, 4> kKeyNames<ElementKey>{"class", "id", "ref", "values"};

template <class Key>
constexpr std::string_view nameOf(Key key) noexcept {
    return kKeyNames<Key>[static_cast<std::size_t>(key)];
}

/// The keys that an object was given so far, out of those that it may have.
template <class Key>
class Keys {
public:
    /// Refused for a name that is no key of such an object, or that it was given before.
    void add(std::string_view name) {
        last_.reset();
        for (std::size_t i = 0; i < kKeyNames<Key>.size(); ++i) {
            if (kKeyNames<Key>[i] != name) continue;
            auto const key = static_cast<Key>(i);
            if (has(key)) refuseSecond(name);
            given_ |= bit(key);
            last_ = key;
            return;
        }
        throw Refused("the key " + inQuotes(name) + " isn't known here");
    }
    bool has(Key key) const noexcept { return (given_ & bit(key)) != 0; }
    template <class... K>
    bool areJust(K... keys) const noexcept {
        return given_ == (bit(keys) | ...);
    }
    /// The key whose value is being read; none if what is read is the object as a whole.
    std::optional<Key> last() const noexcept { return last_; }
    bool isAt(Key key) const noexcept { return last_ == key; }
    void finish() noexcept { last_.reset(); }

private:
    static constexpr unsigned bit(Key key) noexcept { return 1U << static_cast<unsigned>(key); }

    std::optional<Key> last_;
    unsigned given_ = 0;
};

/// A property of an element that is being read.
struct Owner {
    ModelElement::Impl* element = nullptr;
    FieldForm const* property = nullptr;
    bool isRoot = false;  // whether the element is a root
};

/// The whole text.
struct DocumentFrame {
    Keys<DocumentKey> keys;
    std::string schema{};
};

/// A list of elements: the roots, or the members of a property.
struct ElementsFrame {
    Owner owner{};          // its property is null for the roots
    std::size_t count = 0;  // elements that have begun so far
};

/// An element, or a reference to one.
struct ElementFrame {
    Owner owner{};  // where it is a value; its property is null for a root
    Keys<ElementKey> keys{};
    ClassForm const* form = nullptr;  // once the class was given
    boost::uuids::uuid id{};          // of the element or, of a reference, of what it refers to
    ModelElement element{};           // once it was made: the element, or a proxy whose values are read later
};

/// The values of an element.
struct ValuesFrame {
    ClassForm const* form;
    Owner current;          // the element, and the property of the last key, null before the first one
    std::size_t firstSeen;  // where the properties of this element begin in the loader's list
};

using Frame = std::variant<DocumentFrame, ElementsFrame, ElementFrame, ValuesFrame>;

/// A JSON pointer to what is being read in the innermost frame, after `begin`.
std::string pointerTo(std::vector<Frame> const& frames, std::string begin);

}  // namespace quay::zero::io
