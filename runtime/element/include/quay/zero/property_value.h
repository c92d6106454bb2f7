// Values of properties: the part of Value that needs to know what a property is.
#pragma once

#include <quay/zero/meta/property.h>
#include <quay/zero/value.h>

namespace quay::zero {

inline ModelElement::Impl* Value::typeOf(meta::Property const& property) noexcept { return property->type(); }

template <class T>
Value Value::createPrimitiveValue(meta::Property const& property, T const& value) {
    if constexpr (IsOptional<T>::value) {
        if (value) return createPrimitiveValue(property, *value);
        if (isRequired(property)) reportException(quay0::messages::InvalidValue());
        return Value(ValueMeta(typeOf(property), ValueFlags::Optional));
    } else {
        if (!isTypeOf<T>(typeOf(property))) Value(ValueMeta(typeOf(property), ValueFlags::One)).reportIncompatible();
        return wrapUnchecked(property, value);
    }
}

template <class T>
Value Value::wrapUnchecked(meta::Property const& property, T const& value) {
    return {typeOf(property), value, ValueFlags::One};
}

}  // namespace quay::zero
