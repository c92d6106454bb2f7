#include <quay/zero/meta/no_such_property.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/structured_value.h>

namespace quay::zero {

std::size_t fieldPosition(meta::Type const& type, meta::Property const& property) {
    auto const& fields = *type->getOwnedProperties();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i] == property) return i;
    }
    meta::reportNoSuchProperty(property, type);
}

}  // namespace quay::zero
