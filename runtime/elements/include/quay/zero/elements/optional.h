// Shape "optional": one value or none. Unset differs from every value.
#pragma once

#include <quay/zero/builder.h>
#include <quay/zero/value_descriptor.h>

#include <boost/optional.hpp>

namespace quay::zero::elements {

template <class T>
class Optional final : public ValueDescriptor<boost::optional<T>> {
    using Held = boost::optional<T>;

public:
    using Element = ModelElement::Impl;
    using ValueDescriptor<Held>::ValueDescriptor;

    void set(Element& e, Held const& value) const { this->write(e, value); }

    bool has(Element const& e) const override { return this->read(e).has_value(); }
    Value get(Element const& e, meta::Property const& property, ReflectionPrivateTag const& /*tag*/) const override {
        return Value::createPrimitiveValue(property, this->read(e));
    }
    void set(Element& e, meta::Property const& /*property*/, Value const& value,
             ReflectionPrivateTag const& /*tag*/) const override {
        set(e, unpack(value));
    }
    Value wrap(Element const& /*e*/, meta::Property const& property, Cell& old) const override {
        return Value::createPrimitiveValue(property, old.get<Held>());
    }

    void give(ModelElement::Builder& builder, meta::Property const& /*property*/, Value const& value) const override {
        builder.giveValue<Held>(this->index(), unpack(value));
    }
    void build(Element& e, Cell const& given) const override { this->fill(e, given.get<Held>()); }

private:
    /// A value of count one sets the property, with the type's zero if the value is empty; a value of count zero unsets
    /// it.
    static Held unpack(Value const& value) {
        if (value.getCount() == 1) return Held(value.getValue<T>());
        return value.getValue<Held>();
    }
};

}  // namespace quay::zero::elements
