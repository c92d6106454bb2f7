// Derived properties: computed by accessors, without a field, an index or a default.
#pragma once

#include <quay/zero/elements/key.h>
#include <quay/zero/model_element.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/value.h>

#include <type_traits>

namespace quay::zero::elements {

/// Always present. Writing it writes the properties from which it is derived, and those changes are recorded.
template <auto Getter, auto Setter>
class Derived final : public PropertyDescriptor {
    using X = typename detail::GetterOf<decltype(Getter)>::Class;
    using T = std::decay_t<typename detail::GetterOf<decltype(Getter)>::Key>;

public:
    using Element = ModelElement::Impl;

    constexpr Derived() noexcept : PropertyDescriptor(0, PropertyKind::Derived) {}

    bool has(Element const& /*e*/) const override { return true; }
    Value get(Element const& e, meta::Property const& property, ReflectionPrivateTag const& /*tag*/) const override {
        return Value::createPrimitiveValue(property, (static_cast<X const&>(e).*Getter)());
    }
    void set(Element& e, meta::Property const& /*property*/, Value const& value,
             ReflectionPrivateTag const& /*tag*/) const override {
        (static_cast<X&>(e).*Setter)(value.getValue<T>());
    }
};

}  // namespace quay::zero::elements
