#include <quay/zero/element_name.h>
#include <quay/zero/meta/serializers.h>

namespace quay::zero {

namespace {

bool isText(meta::Property const& property) {
    meta::Type const type = property->getType();
    bool const isOne = property->getFlags() == ValueFlags::One || property->getFlags() == ValueFlags::Optional;
    return isOne && (type == meta::StandardTypes::stringMeta || type == meta::StandardTypes::stdstringMeta);
}

/// Searches the properties of a class, those of its superclasses first, for the naming property, and keeps the best
/// candidate so far in `best`. Returns true once no better one can follow.
bool findNaming(meta::Class::Impl const& metaClass, meta::Property& best) {
    if (metaClass.superclass() != nullptr && findNaming(*metaClass.superclass(), best)) return true;
    for (meta::Property const& property : *metaClass.getOwnedProperties()) {
        if (property->isDerived() || !isText(property)) continue;
        std::u16string const& name = property->getName();
        if (name == u"compiledSignalLabel" || name == u"name") {
            best = property;
            return true;
        }
        bool const isName = name.ends_with(u"Name") || name.ends_with(u"Path") || name == u"identifier";
        if (isName && !best) best = property;
    }
    return false;
}

}  // namespace

meta::Property namingProperty(meta::Class const& metaClass) {
    meta::Property best;
    findNaming(*metaClass.impl(), best);
    return best;
}

std::u16string nameOf(ModelElement const& element) {
    meta::Property name;
    if (meta::Property const owner = element->containmentFeature()) name = owner->getQualifiedBy();
    if (!name) name = namingProperty(element->getMetaClass());
    if (!name) return {};
    auto const* const serializer =
        meta::PropertySerializerRegistry::getInstance()->getPropertySerializer(name->getType(), "");
    if (serializer == nullptr) return {};
    return serializer->serializeOptionalValue(element->getPropertyValue(name, ReflectionPrivateTag::NO_PROXY_RESOLVE));
}

}  // namespace quay::zero
