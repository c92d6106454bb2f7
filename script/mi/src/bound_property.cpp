#include "bound_property.h"

#include <quay/zero/meta/registry.h>
#include <quay/zero/report.h>
#include <quay/zero/text.h>

#include <quay0/messages.h>

namespace quay::zero::mi {

meta::Type typeOfScriptName(std::string_view scriptName) {
    meta::Type found = meta::MetaRegistry::getInstance()->findTypeByScriptName(scriptName);
    if (!found) reportException(quay0::messages::NoSuchType(toUtf16(scriptName)));
    return found;
}

std::string scriptNameOfType(meta::Type const& type) {
    return meta::MetaRegistry::getInstance()->getTypeNames(type).script;
}

BoundProperty::BoundProperty(meta::Property const& property)
    : property_(property), owner_(scriptNameOfType(property->getOwningType())), name_(property->getName()) {}

void BoundProperty::rebind() const {
    meta::Property const found = typeOfScriptName(owner_)->findProperty(name_);
    if (!found) reportException(quay0::messages::NoSuchProperty(name_, toUtf16(owner_)));
    property_ = found;
}

void BoundClass::rebind() const { class_ = meta::Class::cast(typeOfScriptName(scriptName_)); }

}  // namespace quay::zero::mi
