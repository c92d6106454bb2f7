#include "elements.h"

#include <keel/text.h>
#include <quay/zero/builder.h>
#include <quay/zero/collection.h>
#include <quay/zero/io/io.h>
#include <quay/zero/property_row.h>
#include <quay/zero/value.h>

#include <algorithm>

namespace modelref {

using namespace quay::zero;

namespace {

auto const& kTag = ReflectionPrivateTag::PUBLIC_ACCESS;

bool isText(Property const& property) {
    meta::Type const type = property->getType();
    bool const isOne = property->getFlags() == ValueFlags::One || property->getFlags() == ValueFlags::Optional;
    return isOne && (type == meta::StandardTypes::stringMeta || type == meta::StandardTypes::stdstringMeta);
}

/// The property that names the elements of a class, or an empty handle.
Property namingProperty(ModelElement const& element) {
    static std::map<ModelElement::Impl const*, Property> known;
    auto const found = known.find(element->getMetaClass().impl());
    if (found != known.end()) return found->second;
    Property result;
    for (Property const& property : storedProperties(element)) {
        if (!isText(property)) continue;
        std::u16string const& name = property->getName();
        if (name == u"compiledSignalLabel" || name == u"name") {
            result = property;
            break;
        }
        bool const isName = name.ends_with(u"Name") || name.ends_with(u"Path") || name == u"identifier";
        if (isName && !result) result = property;
    }
    return known[element->getMetaClass().impl()] = result;
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

bool isSeveral(Property const& property) {
    return property->getFlags() != ValueFlags::One && property->getFlags() != ValueFlags::Optional;
}

std::vector<ModelElement> childrenOf(ModelElement const& element, Property const& property) {
    PropertyRow const& row = *property->row();
    auto const isGuest = [&](ModelElement const& child) {
        return !element.impl()->owns(*child.impl()) || child->containmentFeature() != property;
    };
    if (auto* const collection = static_cast<ReferenceCollection*>(row.collection(*element.impl()))) {
        std::vector<ModelElement> members = collection->getAllValues();
        std::erase_if(members, isGuest);
        if (property->getFlags() == ValueFlags::Set) {
            std::sort(members.begin(), members.end(), [](auto& a, auto& b) { return a->uuid() < b->uuid(); });
        }
        return members;
    }
    if (!row.has(*element.impl())) return {};
    auto const child = element->getPropertyValue(property, kTag).getValue<ModelElement>();
    if (isGuest(child)) return {};
    return {child};
}

std::string classOf(ModelElement const& element) { return keel::toUtf8(element->getMetaClass()->getName()); }

std::string plainText(ModelElement const& element, Property const& property) {
    Value const value = element->getPropertyValue(property, kTag);
    if (!isText(property) || !value.hasPayload()) return io::propertyText(element, property);
    if (property->getType() == meta::StandardTypes::stringMeta) return keel::toUtf8(value.getValue<std::u16string>());
    return value.getValue<std::string>();
}

std::string nameOf(ModelElement const& element) {
    Property name;
    if (Property const owner = element->containmentFeature()) name = owner->getQualifiedBy();
    if (!name) name = namingProperty(element);
    return name ? plainText(element, name) : std::string();
}

std::string escaped(std::string_view key) {
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
    return result;
}

std::string unescaped(std::string_view part) {
    std::string result;
    for (std::size_t i = 0; i < part.size(); ++i) {
        bool const isEscape = part[i] == '~' && i + 1 < part.size() && (part[i + 1] == '0' || part[i + 1] == '1');
        result += isEscape ? (part[++i] == '0' ? '~' : '/') : part[i];
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
    if (property->getFlags() == ValueFlags::Map) return path + "/" + escaped(nameOf(element));
    auto& positions = positions_[{owner.impl(), element->containmentIndex()}];
    if (positions.empty()) {
        std::size_t position = 0;
        for (ModelElement const& child : childrenOf(owner, property)) positions[child.impl()] = position++;
    }
    return path + "/" + std::to_string(positions[element.impl()]);
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
