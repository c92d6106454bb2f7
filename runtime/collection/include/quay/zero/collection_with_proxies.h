// The base of sets and maps, which keep proxies apart from their members.
#pragma once

#include <quay/zero/collection.h>
#include <quay/zero/proxy_id.h>

#include <memory>
#include <unordered_map>
#include <vector>

namespace quay::zero {

/// Keeps the proxies of a collection by the id that they stand for, since a proxy has no key and isn't equal to the
/// element that it stands for. A proxy doesn't count as a member until it is resolved. A second proxy of the same
/// element is ignored.
class QUAY_ZERO_API CollectionWithProxies : public ReferenceCollection {
public:
    bool holdsNothing() const noexcept final { return empty() && !hasProxies(); }

    std::vector<ModelElement> getAllValuesAndProxies() const final;
    void replaceProxy(ModelElement const& e, unsigned long index) final;
    void resolveAll() final { resolveProxies(false); }
    void resolveLocal() final { resolveProxies(true); }
    bool basicContainsProxyTo(ModelElement const& e) final;

    void exchangeProxy(ProxyStep& step) noexcept final;

protected:
    using Proxies = std::unordered_map<ProxyId, ModelElement>;

    using ReferenceCollection::ReferenceCollection;
    ~CollectionWithProxies() override;

    bool hasProxies() const noexcept { return proxies_ != nullptr && !proxies_->empty(); }
    bool holdsProxy(ModelElement const& proxy) const;
    bool hasSameProxies(CollectionWithProxies const& other) const;
    std::unique_ptr<Proxies> copyOfProxies() const;
    void resolveUnlessHeld() {
        if (hasProxies() && owner() != nullptr && owner()->model().proxies().holds() < 1) resolveAll();
    }

    /// Add and remove as operations, and without.
    void addProxy(ModelElement const& proxy);
    void removeProxy(ModelElement const& proxy);
    void basicAddProxy(ModelElement const& proxy);
    void basicRemoveProxy(ModelElement const& proxy);

    /// Adds what a proxy stands for and records it. If the element can't be a member here, does nothing and returns
    /// false.
    virtual bool resolveAdd(ModelElement const& e) = 0;
    virtual void appendMembers(std::vector<ModelElement>& to) const = 0;

    std::unique_ptr<Proxies> proxies_;  // null until the first proxy; then it stays, for nodes that are put back

private:
    struct TakenProxy;

    bool resolveTo(ModelElement const& proxy, ModelElement const& found);
    void resolveProxies(bool localOnly);
};

}  // namespace quay::zero
