#include <quay/zero/meta/property.h>
#include <quay/zero/primitive_collection.h>

namespace quay::zero {

meta::Type AbstractPrimitiveCollection::propertyTypeOr(meta::Type const& other) const {
    meta::Property const property = getCollectionProperty();
    return property.impl() == nullptr ? other : property->getType();
}

}  // namespace quay::zero
