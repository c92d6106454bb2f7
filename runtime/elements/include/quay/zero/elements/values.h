// The descriptor of the shapes "sequence" and "set".
#pragma once

#include <quay/zero/builder.h>
#include <quay/zero/collection_descriptor.h>
#include <quay/zero/primitive_collection.h>

#include <utility>
#include <vector>

namespace quay::zero::elements {

/// The descriptor of a collection `C` of plain values T. A builder gives the values as a vector. The collection and
/// CollectionDescriptor write, undo and reflect the content.
template <class T, class C>
class Values : public CollectionDescriptor {
public:
    using Element = ModelElement::Impl;

    template <class X>
    constexpr Values(std::uint16_t index, C X::*field) noexcept
        : CollectionDescriptor(index, PropertyKind::PrimitiveCollection), field_(static_cast<C Element::*>(field)) {}

    AbstractOwnedCollection* collection(Element const& e) const override { return const_cast<C*>(&(e.*field_)); }

    void give(ModelElement::Builder& builder, meta::Property const& /*property*/, Value const& value) const override {
        builder.appendValue<T>(index(), value.getValue<T>());
    }
    void build(Element& e, Cell const& given) const override {
        auto const& values = given.get<std::vector<T>>();
        (e.*field_).assignUnrecorded({values.begin(), values.end()});
    }

protected:
    ~Values() = default;

private:
    C Element::*field_;
};

}  // namespace quay::zero::elements
