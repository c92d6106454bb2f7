#include <quay/zero/meta/property.h>
#include <quay/zero/owned_collection.h>

namespace quay::zero {

AbstractOwnedCollection::AbstractOwnedCollection(meta::Property const& property, bool eachOnce) noexcept
    : property_(property.impl()),
      index_(property.impl() == nullptr ? std::uint16_t{0} : property->getIndex()),
      detached_(true),
      eachOnce_(eachOnce) {}

meta::Property AbstractOwnedCollection::getCollectionProperty() const {
    return detached_ ? meta::Property::of(property_) : owner_->getPropertyByIndex(index_);
}

std::u16string AbstractOwnedCollection::describe() const {
    return detached_ ? std::u16string() : owner_->nameOf(index_);
}

}  // namespace quay::zero
