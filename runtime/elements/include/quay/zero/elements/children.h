// Creating a child directly in a property, for all shapes that own several children.
#pragma once

#include <quay/zero/builder.h>
#include <quay/zero/elements/create.h>
#include <quay/zero/elements/handle.h>
#include <quay/zero/owned_collection_descriptor.h>

namespace quay::zero::elements {

/// Creates a child and adds it to the descriptor's property, in one savepoint: a failure undoes both.
template <class T>
T createInto(PropertyDescriptor const& descriptor, ModelElement::Impl& owner) {
    owner.requireWritable();
    Savepoint savepoint(owner.model().journal());
    T const child = T::of(new typename T::Impl(Model(&owner.model()), boost::uuids::uuid{}));
    child->notifyCreated();
    descriptor.place(owner, child);
    savepoint.commit();
    return child;
}

/// Creates a child by a builder and adds it to the property. The child is of the owner's model, whatever model the
/// builder had.
template <class T>
T createInto(PropertyDescriptor const& descriptor, ModelElement::Impl& owner, BuilderWrapper<T> const& wrapper,
             boost::uuids::uuid const& id) {
    owner.requireWritable();
    wrapper.builder().setModel(Model(&owner.model()));
    Savepoint savepoint(owner.model().journal());
    ModelElement const child = wrapper.builder().create(id);
    descriptor.place(owner, child);
    savepoint.commit();
    return T::cast(child);
}

/// The descriptor of a collection `C` of children of class T; `Base` is its descriptor's base.
template <class T, class C, class Base = CollectionDescriptor>
class Children : public OwnedCollectionDescriptor<C, Base> {
public:
    using Element = ModelElement::Impl;
    using OwnedCollectionDescriptor<C, Base>::OwnedCollectionDescriptor;

    T createInto(Element& owner) const { return elements::createInto<T>(*this, owner); }
    T createInto(Element& owner, BuilderWrapper<T> const& builder, boost::uuids::uuid const& id) const {
        return elements::createInto<T>(*this, owner, builder, id);
    }

protected:
    ~Children() = default;
};

}  // namespace quay::zero::elements
