#include <quay/zero/mi/meta_marshaler_registry.h>

#include <quay/zero/meta/registry.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

#include "primitive_marshalers.h"

namespace quay::zero::mi {

MetaMarshalerRegistry& MetaMarshalerRegistry::getInstance() {
    static auto* const registry = new MetaMarshalerRegistry;
    return *registry;
}

MetaMarshalerRegistry::MetaMarshalerRegistry() {
    meta::MetaRegistry::getInstance();  // registers the standard types
    for (auto& marshaler : makePrimitiveMarshalers()) {
        meta::Type const type = marshaler->getType();
        registerTypeMarshaler(type, std::move(marshaler));
    }
}

ValueMarshaler* MetaMarshalerRegistry::findPropertyMarshaler(meta::Type const& type) const noexcept {
    auto const found = marshalers_.find(type.ModelElement::impl());
    return found == marshalers_.end() ? nullptr : found->second.get();
}

ValueMarshaler& MetaMarshalerRegistry::getPropertyMarshaler(meta::Type const& type) const {
    ValueMarshaler* const found = findPropertyMarshaler(type);
    if (found == nullptr) {
        reportException(quay0::messages::NoSuchType(type.ModelElement::impl() ? type->getQualifiedName() : u""));
    }
    return *found;
}

void MetaMarshalerRegistry::registerTypeMarshaler(meta::Type const& type, std::unique_ptr<ValueMarshaler> marshaler) {
    marshalers_[type.ModelElement::impl()] = std::move(marshaler);
}

void MetaMarshalerRegistry::unregisterTypeMarshaler(meta::Type const& type) noexcept {
    marshalers_.erase(type.ModelElement::impl());
}

}  // namespace quay::zero::mi
