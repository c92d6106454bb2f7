// What elements that are proxies stand for, and how proxies are made.
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

/// Runs when the library is loaded, before anything can ask for a proxy.
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
