// The base of descriptors of properties that are collections.
#pragma once

#include <quay/zero/collection.h>
#include <quay/zero/property_descriptor.h>

namespace quay::zero {

/// Uses only operations that every collection has. Changes of content are undone by the steps that the collection
/// records; the cell operations serve code that keeps a copy of the content in a Storage itself.
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
    /// The value points at the collection; nothing is copied.
    Value get(ModelElement::Impl const& e, meta::Property const& property,
              ReflectionPrivateTag const& tag) const override;
    /// Replaces the content by that of the collection or container in the value, in one transaction.
    void set(ModelElement::Impl& e, meta::Property const& property, Value const& value,
             ReflectionPrivateTag const& tag) const override;

protected:
    ~CollectionDescriptor() = default;
};

}  // namespace quay::zero
