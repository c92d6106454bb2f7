// A derived property: computed by accessors of its own, without a field, an index or a default.
#pragma once

#include <quay/zero/model_element.h>
#include <quay/zero/property_row.h>
#include <quay/zero/value.h>

#include <type_traits>

namespace quay::zero::elements {

/// Always present. Writing it writes what it derives from, and that is the change which is recorded.
template <class T>
class Derived final : public PropertyRow {
public:
    using Element = ModelElement::Impl;
    using Parameter = std::conditional_t<std::is_scalar_v<T>, T, T const&>;

    template <class X>
    constexpr Derived(T (X::*getter)() const, void (X::*setter)(Parameter)) noexcept
        : PropertyRow(0, RowKind::Derived),
          getter_(static_cast<T (Element::*)() const>(getter)),
          setter_(static_cast<void (Element::*)(Parameter)>(setter)) {}

    bool has(Element const& /*e*/) const override { return true; }
    Value get(Element const& e, meta::Property const& property, ReflectionPrivateTag const& /*tag*/) const override {
        return Value::createPrimitiveValue(property, (e.*getter_)());
    }
    void set(Element& e, meta::Property const& /*property*/, Value const& value,
             ReflectionPrivateTag const& /*tag*/) const override {
        (e.*setter_)(value.getValue<T>());
    }

private:
    T (Element::*getter_)() const;
    void (Element::*setter_)(Parameter);
};

}  // namespace quay::zero::elements
