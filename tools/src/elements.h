// Elements by reflection: what they own, what they are called, and where they stand.
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

/// The properties of the element's class that hold something of their own, in order of declaration.
std::vector<Property> const& storedProperties(ModelElement const& element);
/// A map or a multimap.
bool isKeyed(Property const& property);
/// The part of each child's path that follows the property: an entry's key, with a number after it where several have
/// that key ("gain", "gain/1"), and the position of any other child.
std::vector<std::string> placesOf(std::vector<ModelElement> const& children, Property const& property);
/// The position that a text is, written as placesOf() writes it.
std::optional<std::size_t> positionIn(std::string_view text);

/// The class's name: "InportInformation".
std::string classOf(ModelElement const& element);
/// What people call the element, in UTF-8; see quay::zero::nameOf.
std::string nameOf(ModelElement const& element);
/// A text property as it stands, in UTF-8; any other as JSON.
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

/// The paths of what a property refers to but the element doesn't own, in order; a set's sorted. An element that isn't
/// there is told by its id.
std::vector<std::string> referencesOf(ModelElement const& element, Property const& property, Paths& paths);

/// The values of fresh elements, as JSON, to tell what was set.
class Initials {
public:
    std::string const& of(ModelElement const& element, Property const& property);

private:
    Model model_ = Model::create();
    std::map<std::pair<ModelElement::Impl const*, ModelElement::Impl const*>, std::string> texts_;
};

}  // namespace modelref
