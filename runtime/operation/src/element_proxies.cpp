// The functions of elements that concern proxies, and the factory of proxies.
#include <quay/zero/builder.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/model.h>
#include <quay/zero/proxy_id.h>

namespace quay::zero {

namespace {

ModelElement makeUnlisted(meta::Class const& metaClass, ElementImpl& model) {
    auto const builder = metaClass->instantiateBuilder(Model(static_cast<ModelImpl*>(&model)));
    return builder == nullptr ? ModelElement() : builder->createSuppressed(boost::uuids::uuid{});
}

/// Sets the factory when the library is loaded, before any proxy can be created.
[[maybe_unused]] bool const isFactorySet = (Proxies::setFactory(&makeUnlisted), true);

}  // namespace

ProxyId ModelElement::Impl::getProxyId() const {
    ProxyId const* const id = model_->proxies().idOf(*this);
    return id == nullptr ? ProxyId(uuid()) : *id;
}

ProxyId ModelElement::Impl::getPersistentProxyId(bool withStore) const {
    if (isProxy()) return getProxyId();
    return withStore ? ProxyId(model_->storeName(), uuid()) : ProxyId(uuid());
}

}  // namespace quay::zero
