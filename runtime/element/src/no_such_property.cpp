#include <quay/zero/meta/no_such_property.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

namespace quay::zero::meta {

std::u16string nameOrNothing(Property const& property) {
    return property.impl() == nullptr ? std::u16string() : property->getName();
}

void reportNoSuchProperty(Property const& property, MetaElement const& type) {
    reportException(quay0::messages::NoSuchProperty(nameOrNothing(property), type->getQualifiedName()));
}

}  // namespace quay::zero::meta
