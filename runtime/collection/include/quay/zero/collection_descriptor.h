// A property whose values stand in a collection: what all such descriptors share.
#pragma once

#include <quay/zero/collection.h>
#include <quay/zero/property_descriptor.h>

namespace quay::zero {

/// Works through the collection's own operations, whatever its class. Changes of content are undone by the steps that
/// the collection writes; the cell operations serve whoever keeps a copy of the content in a Storage by hand.
class QUAY_ZERO_API CollectionDescriptor : public PropertyDescriptor {
public:
    using PropertyDescriptor::PropertyDescriptor;

    void save(ModelElement::Impl const& e, Cell& old) const override;
    void exchange(ModelElement::Impl& e, Cell& old) const noexcept override;
    void restore(ModelElement::Impl& e, Cell const& old) const override;
    bool unchanged(ModelElement::Impl const& e, Cell const& old) const override;
    void discard(Cell& old) const noexcept override;
    void relocate(Cell& from, Cell& to) const noexcept override;
    Value wrap(ModelElement::Impl const& e, meta::Property const& property, Cell& old) const override;

    bool has(ModelElement::Impl const& e) const override { return !collection(e)->empty(); }
    /// A view: the value points at the collection.
    Value get(ModelElement::Impl const& e, meta::Property const& property,
              ReflectionPrivateTag const& tag) const override;
    /// Makes the content that of the value's collection or container, in one transaction.
    void set(ModelElement::Impl& e, meta::Property const& property, Value const& value,
             ReflectionPrivateTag const& tag) const override;

protected:
    ~CollectionDescriptor() = default;
};

}  // namespace quay::zero
