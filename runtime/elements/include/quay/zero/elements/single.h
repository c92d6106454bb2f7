// Shape "single": exactly one value.
#pragma once

#include <quay/zero/builder.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/value_descriptor.h>

namespace quay::zero::elements {

/// Reflection and building of a property that always has exactly one value. ValueDescriptor writes, saves, restores and
/// compares the value.
template <class T>
class Single : public ValueDescriptor<T> {
public:
    using Element = ModelElement::Impl;
    using ValueDescriptor<T>::ValueDescriptor;

    void set(Element& e, typename ValueDescriptor<T>::Passed value) const { this->write(e, value); }

    bool has(Element const& /*e*/) const override { return true; }
    Value get(Element const& e, meta::Property const& property, ReflectionPrivateTag const& /*tag*/) const override {
        return Value::wrapUnchecked(property, this->read(e));
    }
    /// A reflective write is a typed write. An empty value writes the type's zero.
    void set(Element& e, meta::Property const& /*property*/, Value const& value,
             ReflectionPrivateTag const& /*tag*/) const override {
        set(e, value.getValue<T>());
    }
    Value wrap(Element const& /*e*/, meta::Property const& property, Cell& old) const override {
        return Value::wrapUnchecked(property, old.get<T>());
    }

    void give(ModelElement::Builder& builder, meta::Property const& /*property*/, Value const& value) const override {
        builder.giveValue<T>(this->index(), value.getValue<T>());
    }
    void build(Element& e, Cell const& given) const override { this->fill(e, given.get<T>()); }
};

}  // namespace quay::zero::elements
