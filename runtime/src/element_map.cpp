#include <quay/zero/element_map.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/report.h>
#include <quay/zero/text.h>

#include <quay0/messages.h>

#include <cmath>
#include <functional>

namespace quay::zero {

// How a map writes steps: `Inserted` and `Erased` have a Taken, `Swapped` a Content.

/// An entry that is in the tree, where `position` stands, or out of it, in `node`; `before` is then what follows it.
template <class K>
struct KeyedCore<K>::Taken {
    typename Tree::iterator position;
    typename Tree::iterator before;
    typename Tree::node_type node;
};

template <class K>
struct KeyedCore<K>::Content {
    Tree tree;
    std::unique_ptr<Proxies> proxies;
};

template <class K>
KeyedCore<K>::~KeyedCore() = default;

template <class K>
KeyResult<K> KeyedCore<K>::keyOf(ModelElement::Impl const& e) const {
    PropertyRow const* row = nullptr;
    if (this->owner() != nullptr) {
        row = this->owner()->classTable().rowAt(this->index());
    } else if (meta::Property const property = this->getCollectionProperty(); property) {
        row = property->row();
    }
    if (row == nullptr) throw std::bad_function_call();
    return static_cast<KeyedRow<K> const&>(*row).keyOf(e);
}

// --- Content and its record -----------------------------------------------------------------------------------------

template <class K>
void KeyedCore<K>::put(K key, ModelElement const& e) {
    if (!this->recording()) {
        tree_.emplace(std::move(key), e);
        return;
    }
    auto taken = std::make_unique<Taken>();
    Step& step = this->record(StepKind::Inserted);
    try {
        taken->position = tree_.emplace(std::move(key), e);
    } catch (...) {
        step.kind = StepKind::Touched;
        throw;
    }
    step.payload = taken.release();
}

template <class K>
void KeyedCore<K>::take(Position position) {
    if (!this->recording()) {
        tree_.erase(position);
        return;
    }
    auto taken = std::make_unique<Taken>();
    Step& step = this->record(StepKind::Erased);
    taken->before = tree_.erase(position, position);  // the same place, as one that may be written through
    ++taken->before;
    taken->node = tree_.extract(position);
    step.payload = taken.release();
}

template <class K>
void KeyedCore<K>::swapContent(Content&& content) {
    if (this->recording()) {
        auto other = std::make_unique<Content>();
        Step& step = this->record(StepKind::Swapped);
        other->tree.swap(tree_);
        other->proxies.swap(proxies_);
        step.payload = other.release();
    }
    tree_.swap(content.tree);
    proxies_.swap(content.proxies);
}

template <class K>
void KeyedCore<K>::exchange(Step& step) noexcept {
    if (step.kind == StepKind::Swapped) {
        auto& other = *static_cast<Content*>(step.payload);
        other.tree.swap(tree_);
        other.proxies.swap(proxies_);
        return;
    }
    auto& taken = *static_cast<Taken*>(step.payload);
    if (step.kind == StepKind::Inserted) {
        taken.before = std::next(taken.position);
        taken.node = tree_.extract(taken.position);
        step.kind = StepKind::Erased;
    } else {
        taken.position = tree_.insert(taken.before, std::move(taken.node));
        step.kind = StepKind::Inserted;
    }
}

template <class K>
void KeyedCore<K>::discard(Step& step) noexcept {
    if (step.kind == StepKind::Swapped) {
        delete static_cast<Content*>(step.payload);
    } else {
        delete static_cast<Taken*>(step.payload);
    }
    step.payload = nullptr;
}

template <class K>
bool KeyedCore<K>::sameByRule(AbstractOwnedCollection const& old) const {
    auto const& before = static_cast<KeyedCore const&>(old).tree_;
    if (before.size() != tree_.size() || before.size() > 1) return false;
    return before.empty() ||
           (before.begin()->first == tree_.begin()->first && before.begin()->second == tree_.begin()->second);
}

// --- Typed operations -----------------------------------------------------------------------------------------------

template <class K>
typename KeyedCore<K>::Position KeyedCore<K>::locate(ModelElement const& e) const {
    auto const range = tree_.equal_range(keyOf(*e.impl()));
    for (auto i = range.first; i != range.second; ++i) {
        if (i->second == e) return i;
    }
    return tree_.end();
}

template <class K>
void KeyedCore<K>::insertElement(ModelElement const& element, InsertPolicy policy) {
    if (!element) return;
    ModelElement const e = element;  // it may be one of our own members
    this->checkCompatibleModel(e.impl());
    if (e->isProxy()) {
        addProxy(e);
        return;
    }
    K key(keyOf(*e.impl()));
    if constexpr (std::is_floating_point_v<K>) {
        if (std::isnan(key)) reportException(quay0::messages::InvalidValue().about(this->describe()).withValue(u"NaN"));
    }
    auto const range = tree_.equal_range(key);
    for (auto i = range.first; i != range.second; ++i) {
        if (i->second == e) return;
    }
    bool const taken = unique_ && range.first != range.second;
    if (taken && policy == InsertPolicy::Keep) return;
    if (taken && policy == InsertPolicy::Report) {
        reportException(quay0::messages::UniquenessConstraint().about(this->describe()).withValue(textOf(key)));
    }
    AbstractOwnedCollection::Operation operation(*this);
    if (taken) {
        ModelElement const old = range.first->second;
        take(range.first);
        this->release(old.impl());
    }
    put(std::move(key), e);
    this->contain(e.impl());
    operation.commit();
}

template <class K>
bool KeyedCore<K>::containsElement(ModelElement const& e) const {
    return e && !e->isProxy() && locate(e) != tree_.end();
}

template <class K>
void KeyedCore<K>::removeElement(ModelElement const& element) {
    if (element.impl() == nullptr) return;
    ModelElement const e = element;
    if (e->isProxy()) {
        removeProxy(e);
        return;
    }
    auto const position = locate(e);
    if (position == tree_.end()) return;
    AbstractOwnedCollection::Operation operation(*this);
    take(position);
    this->release(e.impl());
    operation.commit();
}

template <class K>
void KeyedCore<K>::clear() {
    AbstractOwnedCollection::Operation operation(*this);
    this->modifying();
    std::vector<ModelElement> const gone = getAllValuesAndProxies();
    if (!gone.empty()) {
        swapContent({});
        for (ModelElement const& e : gone) this->release(e.impl());
    }
    operation.commit();
}

template <class K>
ModelElement const* KeyedCore<K>::findKey(KeyResult<K> key) const {
    auto const found = tree_.lower_bound(key);
    return found == tree_.end() || found->first != key ? nullptr : &found->second;
}

template <class K>
bool KeyedCore<K>::isTaken(KeyResult<K> key, ModelElement::Impl const* e) const {
    ModelElement const* const found = findKey(key);
    return found != nullptr && *found && found->impl() != e;
}

template <class K>
void KeyedCore<K>::copyContents(AbstractOwnedCollection const& other) {
    AbstractOwnedCollection::Operation operation(*this);
    this->modifying();
    basicCopyValues(static_cast<KeyedCore const&>(other));
    operation.commit();
}

// --- The unchecked paths --------------------------------------------------------------------------------------------

template <class K>
void KeyedCore<K>::basicAdd(ModelElement const& e) {
    put(K(keyOf(*e.impl())), e);
}

template <class K>
void KeyedCore<K>::basicRemove(ModelElement const& e) {
    if (e->isProxy()) {
        removeProxy(e);
        return;
    }
    auto const position = locate(e);
    if (position != tree_.end()) take(position);
}

template <class K>
void KeyedCore<K>::basicClear() {
    if (!tree_.empty() || proxies_ != nullptr) swapContent({});
}

template <class K>
void KeyedCore<K>::basicCopyValues(ReferenceCollection const& other) {
    auto const& from = static_cast<KeyedCore const&>(other);
    swapContent({from.tree_, from.proxies_ == nullptr ? nullptr : std::make_unique<Proxies>(*from.proxies_)});
}

// --- Proxies: they stand apart, since they have no key --------------------------------------------------------------

template <class K>
void KeyedCore<K>::addProxy(ModelElement const& e) {
    AbstractOwnedCollection::Operation operation(*this);
    basicAddWithProxy(e);
    this->contain(e.impl());
    operation.commit();
}

template <class K>
void KeyedCore<K>::basicAddWithProxy(ModelElement const& e) {
    if (!e->isProxy()) {
        basicAdd(e);
        return;
    }
    auto proxies = proxies_ == nullptr ? std::make_unique<Proxies>() : std::make_unique<Proxies>(*proxies_);
    proxies->insert_or_assign(e->getProxyId(), e);
    swapContent({tree_, std::move(proxies)});
}

template <class K>
void KeyedCore<K>::removeProxy(ModelElement const& e) {
    if (proxies_ == nullptr || !proxies_->contains(e->getProxyId())) return;
    auto proxies = std::make_unique<Proxies>(*proxies_);
    proxies->erase(e->getProxyId());
    AbstractOwnedCollection::Operation operation(*this);
    swapContent({tree_, proxies->empty() ? nullptr : std::move(proxies)});
    this->release(e.impl());
    operation.commit();
}

template <class K>
bool KeyedCore<K>::resolveAdd(ModelElement const& e) {
    K key(keyOf(*e.impl()));
    if (unique_ && tree_.contains(key)) return false;
    tree_.emplace(std::move(key), e);
    return true;
}

template <class K>
void KeyedCore<K>::resolveProxies(bool localOnly) {
    if (proxies_ == nullptr || this->owner() == nullptr) return;
    std::u16string const& store = this->owner()->model().storeName();
    for (auto i = proxies_->begin(); i != proxies_->end();) {
        auto const at = i++;
        if (localOnly && at->first.hasOutsidePart(store)) continue;
        ModelElement const found = this->resolveProxy(at->second);
        if (!found || found->isProxy() || !resolveAdd(found)) continue;
        this->contain(found.impl());
        proxies_->erase(at);
    }
    if (proxies_->empty()) proxies_.reset();
}

template <class K>
void KeyedCore<K>::resolveAll() {
    resolveProxies(false);
}

template <class K>
void KeyedCore<K>::resolveLocal() {
    resolveProxies(true);
}

template <class K>
void KeyedCore<K>::replaceProxy(ModelElement const& e, unsigned long /*index*/) {
    if (proxies_ == nullptr) return;
    auto const found = proxies_->find(e->getPersistentProxyId(true));
    if (found != proxies_->end() && resolveAdd(e)) {
        this->contain(e.impl());
        proxies_->erase(found);
    }
}

template <class K>
bool KeyedCore<K>::basicContainsProxyTo(ModelElement const& e) {
    if (proxies_ == nullptr) return false;
    for (auto i = proxies_->begin(); i != proxies_->end(); ++i) {
        if (this->peekResolveProxy(i->second) == e && resolveAdd(e)) {
            proxies_->erase(i);
            return true;
        }
    }
    return false;
}

template <class K>
std::vector<ModelElement> KeyedCore<K>::getAllValues() const {
    if (this->owner() == nullptr || this->owner()->model().resolutionHolds() < 1) {
        const_cast<KeyedCore*>(this)->resolveAll();
    }
    std::vector<ModelElement> result;
    result.reserve(tree_.size());
    for (auto const& entry : tree_) result.push_back(entry.second);
    return result;
}

template <class K>
std::vector<ModelElement> KeyedCore<K>::getAllValuesAndProxies() const {
    std::vector<ModelElement> result;
    result.reserve(tree_.size());
    for (auto const& entry : tree_) result.push_back(entry.second);
    if (proxies_ != nullptr) {
        for (auto const& entry : *proxies_) result.push_back(entry.second);
    }
    return result;
}

// --- Keys as values -------------------------------------------------------------------------------------------------

template <class K>
meta::Type KeyedCore<K>::qualifierType() const {
    meta::Property const property = this->getCollectionProperty();
    meta::Property const key = property ? property->getQualifiedBy() : meta::Property();
    if (!key) return meta::StandardTypes::of<K>();
    return key->getType();
}

template <class K>
std::vector<Value> KeyedCore<K>::getAllKeys() const {
    std::vector<Value> result;
    result.reserve(tree_.size());
    meta::Type const type = qualifierType();
    for (auto const& entry : tree_) result.emplace_back(type, entry.first, ValueFlags::One);
    return result;
}

template class KeyedCore<std::u16string>;
template class KeyedCore<std::string>;
template class KeyedCore<int>;
template class KeyedCore<double>;

}  // namespace quay::zero
