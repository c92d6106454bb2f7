#include <quay/zero/collection_with_proxies.h>
#include <quay/zero/resolution.h>

namespace quay::zero {

/// A proxy of the collection. `node` holds it while it is out of the collection, and is empty otherwise.
struct CollectionWithProxies::TakenProxy : StepContent {
    ProxyId id;
    Proxies::node_type node;
};

CollectionWithProxies::~CollectionWithProxies() = default;

bool CollectionWithProxies::holdsProxy(ModelElement const& proxy) const {
    return hasProxies() && proxies_->contains(proxy->getProxyId());
}

bool CollectionWithProxies::hasSameProxies(CollectionWithProxies const& other) const {
    if (!hasProxies() || !other.hasProxies()) return hasProxies() == other.hasProxies();
    return *proxies_ == *other.proxies_;
}

std::unique_ptr<CollectionWithProxies::Proxies> CollectionWithProxies::copyOfProxies() const {
    return hasProxies() ? std::make_unique<Proxies>(*proxies_) : nullptr;
}

std::vector<ModelElement> CollectionWithProxies::getAllValuesAndProxies() const {
    std::vector<ModelElement> result;
    result.reserve(size() + (hasProxies() ? proxies_->size() : 0));
    appendMembers(result);
    if (hasProxies()) {
        for (auto const& entry : *proxies_) result.push_back(entry.second);
    }
    return result;
}

// --- Content and its record -----------------------------------------------------------------------------------------

void CollectionWithProxies::addProxy(ModelElement const& proxy) {
    if (holdsProxy(proxy)) return;
    Operation operation(*this);
    basicAddProxy(proxy);
    contain(proxy.impl());
    operation.commit();
}

void CollectionWithProxies::removeProxy(ModelElement const& proxy) {
    if (!holdsProxy(proxy)) return;
    Operation operation(*this);
    ModelElement const gone = proxies_->find(proxy->getProxyId())->second;
    basicRemoveProxy(gone);
    release(gone.impl());
    operation.commit();
}

void CollectionWithProxies::basicAddProxy(ModelElement const& proxy) {
    if (holdsProxy(proxy)) return;
    noteContent();
    if (proxies_ == nullptr) proxies_ = std::make_unique<Proxies>();
    ProxyId const id = proxy->getProxyId();
    if (!recording()) {
        proxies_->emplace(id, proxy);
        return;
    }
    auto taken = std::make_unique<TakenProxy>();
    taken->id = id;
    reserveStep();
    proxies_->emplace(id, proxy);
    record(ProxyStep{this, true, std::move(taken)});
}

void CollectionWithProxies::basicRemoveProxy(ModelElement const& proxy) {
    if (!holdsProxy(proxy)) return;
    auto taken = std::make_unique<TakenProxy>();
    taken->id = proxy->getProxyId();
    if (!recording()) {
        proxies_->erase(taken->id);
        return;
    }
    reserveStep();
    taken->node = proxies_->extract(taken->id);
    record(ProxyStep{this, false, std::move(taken)});
}

// Inserting a node allocates nothing: the table was large enough when the node was in it, and never shrinks.
void CollectionWithProxies::exchangeProxy(ProxyStep& step) noexcept {
    auto& taken = static_cast<TakenProxy&>(*step.entry);
    if (step.isIn) {
        taken.node = proxies_->extract(taken.id);
    } else {
        proxies_->insert(std::move(taken.node));
    }
    step.isIn = !step.isIn;
}

// --- Resolving ------------------------------------------------------------------------------------------------------

bool CollectionWithProxies::resolveTo(ModelElement const& proxy, ModelElement const& found) {
    auto taken = std::make_unique<TakenProxy>();
    taken->id = proxy->getProxyId();
    Resolution resolution(journal());
    bool const added = resolveAdd(found);
    if (added) {
        taken->node = proxies_->extract(taken->id);
        recordResolution(ProxyStep{this, false, std::move(taken)});
        owner()->model().proxies().takePlace(*proxy.impl(), *found.impl(), *owner(), index());
    }
    resolution.commit();
    return added;
}

void CollectionWithProxies::resolveProxies(bool localOnly) {
    if (!hasProxies() || owner() == nullptr) return;
    std::vector<ModelElement> proxies;
    proxies.reserve(proxies_->size());
    for (auto const& [id, proxy] : *proxies_) {
        if (!localOnly || !id.hasOutsidePart(owner()->model().storeName())) proxies.push_back(proxy);
    }
    for (ModelElement const& proxy : proxies) {
        ModelElement const found = resolveProxy(proxy);
        // The resolver may have changed the collection.
        if (found && !found->isProxy() && holdsProxy(proxy)) resolveTo(proxy, found);
    }
}

void CollectionWithProxies::replaceProxy(ModelElement const& e, unsigned long /*index*/) {
    if (!hasProxies() || owner() == nullptr) return;
    for (bool const withStore : {true, false}) {
        auto const found = proxies_->find(e->getPersistentProxyId(withStore));
        if (found == proxies_->end()) continue;
        ModelElement const proxy = found->second;
        resolveTo(proxy, e);
        return;
    }
}

bool CollectionWithProxies::basicContainsProxyTo(ModelElement const& e) {
    if (!hasProxies() || owner() == nullptr) return false;
    for (auto const& entry : *proxies_) {
        if (peekResolveProxy(entry.second) != e) continue;
        ModelElement const proxy = entry.second;
        if (resolveTo(proxy, e)) return true;
        break;
    }
    return false;
}

}  // namespace quay::zero
