// Shape "single" of type ZxArray: a copy of one array of the scripting environment, or none.
#pragma once

#include <zx/array_holder.h>

#include <quay/zero/builder.h>
#include <quay/zero/value_descriptor.h>

namespace quay::zero::elements {

/// Arrays are never compared by content. It is no change to write the element's own array, or the array from which its
/// copy was made if that wasn't written since. Any other array is copied, and that is a change. A Value of the property
/// points at the element's copy and is valid until the next write.
class SingleArray final : public ValueDescriptor<ArrayHolder> {
public:
    using Element = ModelElement::Impl;
    using ValueDescriptor<ArrayHolder>::ValueDescriptor;

    void set(Element& e, zxArray_tag const* value) const {
        e.requireWritable();
        if (!this->read(e).isSameAs(value)) this->replace(e, ArrayHolder(value));
    }

    bool has(Element const& e) const override { return this->read(e).get() != nullptr; }
    Value get(Element const& e, meta::Property const& property, ReflectionPrivateTag const& /*tag*/) const override {
        return wrapArray(property, this->read(e));
    }
    void set(Element& e, meta::Property const& /*property*/, Value const& value,
             ReflectionPrivateTag const& /*tag*/) const override {
        set(e, value.getValue<zxArray_tag*>());
    }
    Value wrap(Element const& /*e*/, meta::Property const& property, Cell& old) const override {
        return wrapArray(property, old.get<ArrayHolder>());
    }

    void give(ModelElement::Builder& builder, meta::Property const& /*property*/, Value const& value) const override {
        builder.giveValue<ArrayHolder>(this->index(), ArrayHolder(value.getValue<zxArray_tag*>()));
    }
    void build(Element& e, Cell const& given) const override { this->fill(e, given.get<ArrayHolder>()); }

private:
    static Value wrapArray(meta::Property const& property, ArrayHolder const& held) {
        return Value::createPrimitiveValue(property, const_cast<zxArray_tag*>(held.get()));
    }
};

}  // namespace quay::zero::elements
