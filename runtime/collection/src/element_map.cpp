#include <quay/zero/element_map.h>
#include <quay/zero/meta/property.h>
#include <quay/zero/report.h>
#include <quay/zero/text.h>

#include <quay0/messages.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>

namespace quay::zero {

/// An entry of the map: while it is in the tree, `position` points at it; otherwise `node` holds it and `before` points
/// at the entry that follows its place.
template <class K>
struct KeyedCore<K>::Taken : StepContent {
    typename Tree::iterator position;
    typename Tree::iterator before;
    typename Tree::node_type node;
};

template <class K>
struct KeyedCore<K>::Content : StepContent {
    Tree tree;
    std::unique_ptr<Proxies> proxies;

    void swap(KeyedCore& with) noexcept {
        tree.swap(with.tree_);
        proxies.swap(with.proxies_);
    }
};

template <class K>
KeyedCore<K>::~KeyedCore() = default;

template <class K>
KeyResult<K> KeyedCore<K>::keyOf(ModelElement::Impl const& e) const {
    PropertyDescriptor const* descriptor = nullptr;
    if (this->owner() != nullptr) {
        descriptor = this->owner()->classTable().descriptorAt(this->index());
    } else if (meta::Property const property = this->getCollectionProperty(); property) {
        descriptor = property->descriptor();
    }
    if (descriptor == nullptr) throw std::bad_function_call();
    return static_cast<KeyedDescriptor<K> const&>(*descriptor).keyOf(e);
}

// --- Content and its record -----------------------------------------------------------------------------------------

template <class K>
void KeyedCore<K>::put(K key, ModelElement const& e, Position before) {
    this->noteContent();
    if (!this->recording()) {
        tree_.emplace_hint(before, std::move(key), e);
        return;
    }
    auto taken = std::make_unique<Taken>();
    this->reserveStep();
    taken->position = tree_.emplace_hint(before, std::move(key), e);
    this->record(EntryStep{this, true, std::move(taken)});
}

template <class K>
void KeyedCore<K>::take(Position position) {
    if (!this->recording()) {
        tree_.erase(position);
        return;
    }
    auto taken = std::make_unique<Taken>();
    this->reserveStep();
    taken->before = tree_.erase(position, position);  // the same position as a mutable iterator
    ++taken->before;
    taken->node = tree_.extract(position);
    this->record(EntryStep{this, false, std::move(taken)});
}

template <class K>
void KeyedCore<K>::swapContent(Content&& content) {
    if (this->recording()) {
        auto kept = std::make_unique<Content>();
        this->reserveStep();
        kept->swap(*this);
        this->record(ContentStep{this, std::move(kept)});
    }
    content.swap(*this);
    if (!holdsNothing()) this->noteContent();
}

template <class K>
void KeyedCore<K>::exchangeEntry(EntryStep& step) noexcept {
    auto& taken = static_cast<Taken&>(*step.entry);
    if (step.isIn) {
        taken.before = std::next(taken.position);
        taken.node = tree_.extract(taken.position);
    } else {
        taken.position = tree_.insert(taken.before, std::move(taken.node));
    }
    step.isIn = !step.isIn;
}

template <class K>
void KeyedCore<K>::exchangeContent(ContentStep& step) noexcept {
    static_cast<Content&>(*step.content).swap(*this);
}

template <class K>
bool KeyedCore<K>::sameByRule(AbstractOwnedCollection const& old) const {
    auto const& before = static_cast<KeyedCore const&>(old).tree_;
    if (before.size() != tree_.size() || before.size() > 1) return false;
    if (!this->hasSameProxies(static_cast<KeyedCore const&>(old))) return false;
    return before.empty() ||
           (before.begin()->first == tree_.begin()->first && before.begin()->second == tree_.begin()->second);
}

// --- Typed operations -----------------------------------------------------------------------------------------------

template <class K>
typename KeyedCore<K>::Position KeyedCore<K>::locate(ModelElement const& e) const {
    KeyResult<K> const key = keyOf(*e.impl());
    for (auto i = tree_.lower_bound(key); i != tree_.end() && i->first == key; ++i) {
        if (i->second == e) return i;
    }
    // If the element is contained elsewhere, its key may have changed since it was added here.
    if (!hasReferences_) return tree_.end();
    return std::find_if(tree_.begin(), tree_.end(), [&](auto const& entry) { return entry.second == e; });
}

/// Whether the element can be a member at all; false avoids a search among those of its key.
template <class K>
bool KeyedCore<K>::mayHold(ModelElement::Impl const& e) const noexcept {
    return hasLoose_ || hasReferences_ || e.containerImpl() == this->owner();
}

template <class K>
void KeyedCore<K>::insertElement(ModelElement const& element, InsertPolicy policy) {
    if (!element) return;
    if (policy < InsertPolicy::Report || policy > InsertPolicy::Replace) {
        reportException(quay0::messages::InvalidValue()
                            .about(this->describe() + u" (insert policy)")
                            .withValue(textOf(static_cast<int>(policy))));
    }
    ModelElement const e = element;  // `element` may be a member of this map
    this->checkCompatibleModel(e.impl());
    if (e->isProxy()) {
        this->addProxy(e);
        return;
    }
    K key(keyOf(*e.impl()));
    if constexpr (std::is_floating_point_v<K>) {
        if (std::isnan(key)) reportException(quay0::messages::InvalidValue().about(this->describe()).withValue(u"NaN"));
    }
    auto const first = tree_.lower_bound(key);
    auto before = first;
    if (unique_ || mayHold(*e.impl())) {
        for (; before != tree_.end() && before->first == key; ++before) {
            if (before->second == e) return;
        }
    } else {
        before = tree_.upper_bound(key);
    }
    bool const isFound = unique_ && first != before;
    bool const taken = isFound && first->second;  // the model of a dead member has gone
    if (taken && policy == InsertPolicy::Keep) return;
    if (taken && policy == InsertPolicy::Report) {
        reportException(quay0::messages::UniquenessConstraint().about(this->describe()).withValue(textOf(key)));
    }
    AbstractOwnedCollection::Operation operation(*this);
    if (isFound) {
        ModelElement const old = first->second;
        take(first);
        if (taken) this->release(old.impl());
    }
    put(std::move(key), e, before);
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
        this->removeProxy(e);
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
    releaseAll();
    operation.commit();
}

template <class K>
void KeyedCore<K>::releaseAll() {
    this->modifying();
    std::vector<ModelElement> const gone = this->getAllValuesAndProxies();
    if (gone.empty()) return;
    swapContent(Content());
    for (ModelElement const& e : gone) this->release(e.impl());
}

template <class K>
ModelElement const* KeyedCore<K>::findKey(KeyResult<K> key) const {
    for (auto found = tree_.lower_bound(key); found != tree_.end() && found->first == key; ++found) {
        if (found->second) return &found->second;
    }
    return nullptr;
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

// --- Operations without checks ---------------------------------------------------------------------------------------

template <class K>
void KeyedCore<K>::basicAdd(ModelElement const& e) {
    K key(keyOf(*e.impl()));
    if constexpr (std::is_floating_point_v<K>) {
        if (std::isnan(key)) return;
    }
    auto const before = tree_.upper_bound(key);
    if (unique_ && before != tree_.begin() && std::prev(before)->first == key) {
        if (std::prev(before)->second) return;
        take(std::prev(before));  // the model of a dead member has gone
    }
    hasLoose_ = hasLoose_ || e->containerImpl() != this->owner();
    put(std::move(key), e, before);
}

template <class K>
void KeyedCore<K>::basicRemove(ModelElement const& e) {
    if (e->isProxy()) {
        this->basicRemoveProxy(e);
        return;
    }
    auto const position = locate(e);
    if (position != tree_.end()) take(position);
}

template <class K>
void KeyedCore<K>::basicClear() {
    if (!this->holdsNothing()) swapContent(Content());
}

template <class K>
void KeyedCore<K>::basicCopyValues(ReferenceCollection const& other) {
    auto const& from = static_cast<KeyedCore const&>(other);
    hasLoose_ = true;
    Content copy;
    copy.tree = from.tree_;
    copy.proxies = from.copyOfProxies();
    swapContent(std::move(copy));
}

template <class K>
void KeyedCore<K>::basicAddWithProxy(ModelElement const& e) {
    e->isProxy() ? this->basicAddProxy(e) : basicAdd(e);
}

// --- Proxies --------------------------------------------------------------------------------------------------------

template <class K>
bool KeyedCore<K>::resolveAdd(ModelElement const& e) {
    K key(keyOf(*e.impl()));
    if (unique_ ? tree_.contains(key) : locate(e) != tree_.end()) return false;
    if constexpr (std::is_floating_point_v<K>) {
        if (std::isnan(key)) return false;
    }
    auto taken = std::make_unique<Taken>();
    this->noteContent();
    taken->position = tree_.emplace(std::move(key), e);
    this->recordResolution(EntryStep{this, true, std::move(taken)});
    hasReferences_ = hasReferences_ || &e->model() != &this->owner()->model() || e->containerImpl() != nullptr;
    return true;
}

template <class K>
void KeyedCore<K>::appendMembers(std::vector<ModelElement>& to) const {
    for (auto const& entry : tree_) to.push_back(entry.second);
}

template <class K>
std::vector<ModelElement> KeyedCore<K>::getAllValues() const {
    const_cast<KeyedCore*>(this)->prepareForReading();
    std::vector<ModelElement> result;
    result.reserve(tree_.size());
    for (auto const& entry : tree_) result.push_back(entry.second);
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
