#include <quay/zero/structured_value.h>

namespace quay::zero {

std::size_t fieldPosition(meta::Type const& type, meta::Property const& property) {
    auto const& fields = *type->getOwnedProperties();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i] == property) return i;
    }
    std::u16string const name = property.impl() == nullptr ? std::u16string() : property->getName();
    reportException(quay0::messages::NoSuchProperty(name, type->getQualifiedName()));
}

}  // namespace quay::zero
