#include <quay/zero/property_value.h>

namespace quay::zero {

ValueMeta::ValueMeta(meta::Property const& property) : type_(property->type()), flags_(property->getFlags()) {}

bool Value::isRequired(meta::Property const& property) { return property->getLower() != 0; }

Value Value::createElementValue(meta::Property const& property, ModelElement const& element) {
    ModelElement::Impl* const type =
        element.impl() == nullptr ? typeOf(property) : element->getMetaClass().ModelElement::impl();
    return {type, element, ValueFlags::One};
}

}  // namespace quay::zero
