#include "elements.h"

#include <keel/text.h>
#include <quay/zero/builder.h>
#include <quay/zero/element_name.h>
#include <quay/zero/io/io.h>
#include <quay/zero/value.h>

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>
#include <charconv>

#include "failure.h"

namespace modelref {

using namespace quay::zero;

namespace {

auto const& kTag = ReflectionPrivateTag::PUBLIC_ACCESS;

bool isText(Property const& property) {
    meta::Type const type = property->getType();
    bool const isOne = property->getFlags() == ValueFlags::One || property->getFlags() == ValueFlags::Optional;
    return isOne && (type == meta::StandardTypes::stringMeta || type == meta::StandardTypes::stdstringMeta);
}

}  // namespace

std::vector<Property> const& storedProperties(ModelElement const& element) {
    static std::map<ModelElement::Impl const*, std::vector<Property>> known;
    auto const [place, isNew] = known.try_emplace(element->getMetaClass().impl());
    if (isNew) {
        for (Property const& property : element->getMetaClass()->getProperties()) {
            if (!property->isDerived()) place->second.push_back(property);
        }
    }
    return place->second;
}

bool isKeyed(Property const& property) {
    return property->getFlags() == ValueFlags::Map || property->getFlags() == ValueFlags::Multimap;
}

std::vector<std::string> placesOf(std::vector<ModelElement> const& children, Property const& property) {
    std::vector<std::string> result;
    if (!isKeyed(property)) {
        for (std::size_t i = 0; i < children.size(); ++i) result.push_back(std::to_string(i));
        return result;
    }
    struct Uses {
        std::size_t count = 0;
        std::size_t seen = 0;
    };
    std::unordered_map<std::string, Uses> uses;
    for (ModelElement const& child : children) {
        result.push_back(escaped(modelref::nameOf(child)));
        ++uses[result.back()].count;
    }
    for (std::string& place : result) {
        Uses& use = uses[place];
        if (use.count > 1) place += "/" + std::to_string(use.seen++);
    }
    return result;
}

std::optional<std::size_t> positionIn(std::string_view text) {
    std::size_t number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || std::to_string(number) != text) return {};
    return number;
}

std::string classOf(ModelElement const& element) { return keel::toUtf8(element->getMetaClass()->getName()); }

std::string plainText(ModelElement const& element, Property const& property) {
    Value const value = element->getPropertyValue(property, kTag);
    if (!isText(property) || !value.hasPayload()) return io::propertyText(element, property);
    if (property->getType() == meta::StandardTypes::stringMeta) return keel::toUtf8(value.getValue<std::u16string>());
    return value.getValue<std::string>();
}

std::string nameOf(ModelElement const& element) { return keel::toUtf8(quay::zero::nameOf(element)); }

std::string escaped(std::string_view key) {
    if (key.empty()) return "~";
    std::string result;
    for (char const c : key) {
        if (c == '~') {
            result += "~0";
        } else if (c == '/') {
            result += "~1";
        } else {
            result += c;
        }
    }
    return onOneLine(result, "~x");
}

std::string unescaped(std::string_view part) {
    if (part == "~") return "";
    std::string result;
    for (std::size_t i = 0; i < part.size(); ++i) {
        std::string_view const rest = part.substr(i);
        unsigned byte = 0;
        if (rest.starts_with("~0") || rest.starts_with("~1")) {
            result += part[++i] == '0' ? '~' : '/';
        } else if (rest.starts_with("~x") && rest.size() >= 4 &&
                   std::from_chars(rest.data() + 2, rest.data() + 4, byte, 16).ptr == rest.data() + 4) {
            result += static_cast<char>(byte);
            i += 3;
        } else {
            result += part[i];
        }
    }
    return result;
}

std::string Paths::of(ModelElement const& element) {
    ModelElement const owner = element->container();
    if (!owner) {
        auto const roots = element->getModel()->getRoots();
        auto const position = std::find(roots.begin(), roots.end(), element) - roots.begin();
        return position == 0 ? "" : "//" + std::to_string(position);
    }
    Property const property = element->containmentFeature();
    std::string const path = of(owner) + "/" + keel::toUtf8(property->getName());
    if (!isSeveral(property)) return path;
    auto& places = places_[{owner.impl(), element->containmentIndex()}];
    if (places.empty()) {
        auto const children = childrenOf(owner, property);
        std::vector<std::string> names = placesOf(children, property);
        for (std::size_t i = 0; i < children.size(); ++i) places[children[i].impl()] = std::move(names[i]);
    }
    return path + "/" + places[element.impl()];
}

std::vector<std::string> referencesOf(ModelElement const& element, Property const& property, Paths& paths) {
    std::vector<std::string> result;
    for (ModelElement const& member : membersOf(element, property)) {
        if (member->isProxy()) {
            result.push_back(to_string(member->getProxyId().id()));
        } else if (!contains(element, property, member)) {
            std::string const path = paths.of(member);
            result.push_back(path.empty() ? "/" : path);
        }
    }
    if (property->getFlags() == ValueFlags::Set) std::sort(result.begin(), result.end());
    return result;
}

std::string const& Initials::of(ModelElement const& element, Property const& property) {
    auto const [place, isNew] = texts_.try_emplace({element->getMetaClass().impl(), property.impl()});
    if (isNew) {
        ModelElement const fresh = element->getMetaClass()->instantiateBuilder(model_)->create({});
        place->second = io::propertyText(fresh, property);
        fresh->destroy();
    }
    return place->second;
}

}  // namespace modelref
