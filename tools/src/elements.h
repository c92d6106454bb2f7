// Access to elements by reflection: their properties, names and paths.
#pragma once

#include <quay/zero/children.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/model.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace modelref {

using quay::zero::childrenOf;
using quay::zero::isSeveral;
using quay::zero::Model;
using quay::zero::ModelElement;
using quay::zero::meta::Property;

/// The properties of the element's class that are stored, not derived, in order of declaration.
std::vector<Property> const& storedProperties(ModelElement const& element);
/// Whether the property is a map or a multimap.
bool isKeyed(Property const& property);
/// The last part of each child's path: for an entry its key, with a number after it if several entries have that key
/// ("gain", "gain/1"); for any other child its position.
std::vector<std::string> placesOf(std::vector<ModelElement> const& children, Property const& property);
/// Parses a position as placesOf() writes it.
std::optional<std::size_t> positionIn(std::string_view text);

/// The name of the element's class: "InportInformation".
std::string classOf(ModelElement const& element);
/// The element's name for people, in UTF-8; see quay::zero::nameOf.
std::string nameOf(ModelElement const& element);
/// The value of a text property in UTF-8; of any other property as JSON.
std::string plainText(ModelElement const& element, Property const& property);

/// A key as a part of a path: "~1" stands for a slash, "~0" for a tilde, "~x0a" for a control character's byte, and "~"
/// alone for an empty key.
std::string escaped(std::string_view key);
std::string unescaped(std::string_view part);

/// The paths of elements, "/inports/0", by their places. Roots after the first one begin with their number:
/// "//1/inports/0".
class Paths {
public:
    std::string of(ModelElement const& element);

private:
    using Place = std::pair<ModelElement::Impl const*, std::uint16_t>;
    std::map<Place, std::unordered_map<ModelElement::Impl const*, std::string>> places_;
};

/// The paths of the elements that a property refers to without owning them, in order; a set's sorted. The id of an
/// element that doesn't exist.
std::vector<std::string> referencesOf(ModelElement const& element, Property const& property, Paths& paths);

/// The initial values of elements by class, as JSON, to tell which values were set.
class Initials {
public:
    std::string const& of(ModelElement const& element, Property const& property);

private:
    Model model_ = Model::create();
    std::map<std::pair<ModelElement::Impl const*, ModelElement::Impl const*>, std::string> texts_;
};

}  // namespace modelref
