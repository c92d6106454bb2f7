#include <quay/zero/collection_with_proxies.h>

namespace quay::zero {

/// What a step about a proxy has, which is told by its position: a proxy that is here, or away in `node`.
struct CollectionWithProxies::TakenProxy {
    ProxyId id;
    Proxies::node_type node;
};

namespace {

constexpr std::size_t kOfProxy = 1;

bool isOfProxy(Step const& step) noexcept { return step.position == kOfProxy && step.kind != StepKind::Swapped; }

}  // namespace

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
    Step& step = record(StepKind::Inserted);
    try {
        proxies_->emplace(id, proxy);
    } catch (...) {
        step.kind = StepKind::Touched;
        throw;
    }
    step.position = kOfProxy;
    step.payload = taken.release();
}

void CollectionWithProxies::basicRemoveProxy(ModelElement const& proxy) {
    if (!holdsProxy(proxy)) return;
    auto taken = std::make_unique<TakenProxy>();
    taken->id = proxy->getProxyId();
    if (!recording()) {
        proxies_->erase(taken->id);
        return;
    }
    Step& step = record(StepKind::Erased);
    taken->node = proxies_->extract(taken->id);
    step.position = kOfProxy;
    step.payload = taken.release();
}

// A node that goes back finds its bucket: the table was as large when the node was in it, and never shrinks.
bool CollectionWithProxies::exchangeProxy(Step& step) noexcept {
    if (!isOfProxy(step)) return false;
    auto& taken = *static_cast<TakenProxy*>(step.payload);
    if (step.kind == StepKind::Inserted) {
        taken.node = proxies_->extract(taken.id);
        step.kind = StepKind::Erased;
    } else {
        proxies_->insert(std::move(taken.node));
        step.kind = StepKind::Inserted;
    }
    return true;
}

bool CollectionWithProxies::discardProxy(Step& step) noexcept {
    if (!isOfProxy(step)) return false;
    delete static_cast<TakenProxy*>(std::exchange(step.payload, nullptr));
    return true;
}

// --- Resolving ------------------------------------------------------------------------------------------------------

bool CollectionWithProxies::resolveTo(ModelElement const& proxy, ModelElement const& found) {
    auto taken = std::make_unique<TakenProxy>();
    taken->id = proxy->getProxyId();
    ModelImpl::Resolution resolution(owner()->model());
    bool const added = resolveAdd(found);
    if (added) {
        taken->node = proxies_->extract(taken->id);
        if (Step* const step = recordResolution(StepKind::Erased)) {
            step->position = kOfProxy;
            step->payload = taken.release();
        }
        owner()->model().takePlace(*proxy.impl(), *found.impl(), *owner(), index());
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
        // The host's resolver may have changed the collection.
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
