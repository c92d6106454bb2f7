// Maps and multimaps of children, by key.
#pragma once

#include <quay/zero/collection_descriptor.h>
#include <quay/zero/collection_with_proxies.h>
#include <quay/zero/generic_collection.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/text.h>

#include <cstddef>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace quay::zero {

/// Reads the key of an element; it is always read from the element's state. Texts are read by reference.
template <class K>
using KeyResult = std::conditional_t<std::is_arithmetic_v<K>, K, K const&>;
template <class K>
using KeyFunction = KeyResult<K> (*)(ModelElement::Impl const&);

/// The order of keys. Texts are ordered by code unit, 8-bit ones by unsigned byte.
template <class K>
struct KeyLess {
    bool operator()(K const& a, K const& b) const noexcept { return a < b; }
};
template <>
struct KeyLess<std::u16string> {
    bool operator()(std::u16string_view a, std::u16string_view b) const noexcept { return lessByUnit(a, b); }
};

/// The descriptor of a property that is a map or multimap: it can read a child's key.
template <class K>
class KeyedDescriptor : public CollectionDescriptor {
public:
    constexpr KeyedDescriptor(std::uint16_t index, KeyFunction<K> key) noexcept
        : CollectionDescriptor(index, PropertyKind::ElementCollection), key_(key) {}

    KeyResult<K> keyOf(ModelElement::Impl const& child) const { return key_(child); }

protected:
    ~KeyedDescriptor() = default;

private:
    KeyFunction<K> key_;
};

/// What `insert` does when the key is in use by another element.
enum class InsertPolicy : int { Report = 0, Keep = 1, Replace = 2 };

/// The base of maps and multimaps of any class, with keys of type K: a tree of keys and handles. Iterates by rising key
/// (texts by code unit, 8-bit ones by unsigned byte); a multimap iterates in order of insertion among equal keys.
/// Proxies have no key and are kept apart until they are resolved. Rolling back restores the stored pairs and never
/// reads a key.
template <class K>
class QUAY_ZERO_API KeyedCore : public CollectionWithProxies {
public:
    using Tree = std::multimap<K, ModelElement, KeyLess<K>>;

    bool empty() const noexcept final { return tree_.empty(); }
    std::size_t size() const noexcept final { return tree_.size(); }

    /// Adds an element. An empty or dead handle, and an element that is a member already, is ignored.
    /// UniquenessConstraint if the key is in use, unless the policy or a multimap allows it; InvalidValue if the key is
    /// NaN.
    void insertElement(ModelElement const& e, InsertPolicy policy);
    bool containsElement(ModelElement const& e) const;
    void removeElement(ModelElement const& e);
    /// Removes all members, which stay alive without a container.
    void clear() final;
    /// The first entry of that key, or an empty handle.
    ModelElement const* findKey(KeyResult<K> key) const;
    /// Whether an element other than `e` has that key.
    bool isTaken(KeyResult<K> key, ModelElement::Impl const* e) const;
    Tree const& tree() const noexcept { return tree_; }
    bool isUnique() const noexcept { return unique_; }
    /// Resolves the proxies, unless resolution is held, so that access by key finds what they stand for.
    void prepareForReading() final { resolveUnlessHeld(); }

    std::vector<Value> getAllKeys() const;
    /// Like `clear`, but never opens a transaction.
    void releaseAll();

    // ReferenceCollection
    void copyContents(AbstractOwnedCollection const& other) final;
    std::vector<ModelElement> getAllValues() const final;
    void basicAdd(ModelElement const& e) final;
    void basicAddWithProxy(ModelElement const& e) final;
    void basicRemove(ModelElement const& e) final;
    void basicClear() final;
    void basicCopyValues(ReferenceCollection const& other) final;

    // AbstractOwnedCollection
    void exchangeEntry(EntryStep& step) noexcept final;
    void exchangeContent(ContentStep& step) noexcept final;
    bool sameByRule(AbstractOwnedCollection const& old) const final;

protected:
    using Position = typename Tree::const_iterator;

    KeyedCore(ModelElement::Impl* owner, std::uint16_t index, bool unique) noexcept
        : CollectionWithProxies(owner, index), unique_(unique) {}
    KeyedCore(meta::Property const& property, bool unique) noexcept
        : CollectionWithProxies(property), unique_(unique) {}
    ~KeyedCore() override;

    KeyResult<K> keyOf(ModelElement::Impl const& e) const;
    meta::Type qualifierType() const;

private:
    struct Taken;
    struct Content;

    Position locate(ModelElement const& e) const;
    bool mayHold(ModelElement::Impl const& e) const noexcept;
    void put(K key, ModelElement const& e, Position before);
    void take(Position position);
    void swapContent(Content&& content);
    bool resolveAdd(ModelElement const& e) final;
    void appendMembers(std::vector<ModelElement>& to) const final;

    Tree tree_;
    bool unique_;
    bool hasLoose_ = false;       // whether a member was ever added unchecked, without the owner as its container
    bool hasReferences_ = false;  // whether a proxy was ever resolved to an element that is contained elsewhere
};

extern template class KeyedCore<std::u16string>;
extern template class KeyedCore<std::string>;
extern template class KeyedCore<int>;
extern template class KeyedCore<double>;

/// Visits the elements of a map in key order.
template <class K, class T>
class MapIterator {
public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = T;
    using difference_type = std::ptrdiff_t;
    using pointer = T const*;
    using reference = T const&;

    MapIterator() noexcept = default;
    explicit MapIterator(typename KeyedCore<K>::Tree::const_iterator at) noexcept : at_(at) {}

    reference operator*() const noexcept { return asHandle<T>(at_->second); }
    pointer operator->() const noexcept { return &**this; }
    K const& key() const noexcept { return at_->first; }
    MapIterator& operator++() noexcept {
        ++at_;
        return *this;
    }
    MapIterator operator++(int) noexcept { return MapIterator(at_++); }
    MapIterator& operator--() noexcept {
        --at_;
        return *this;
    }
    MapIterator operator--(int) noexcept { return MapIterator(at_--); }
    friend bool operator==(MapIterator a, MapIterator b) noexcept { return a.at_ == b.at_; }

private:
    typename KeyedCore<K>::Tree::const_iterator at_;
};

/// Base of the map and the multimap of class T.
template <class K, class T, class Generic>
class TypedKeyed : public KeyedCore<K>, public Generic {
public:
    using const_iterator = MapIterator<K, T>;
    using iterator = const_iterator;
    using value_type = T;
    using key_type = K;

    bool contains(T const& e) const { return this->containsElement(e); }
    void remove(T const& e) { this->removeElement(e); }
    void erase(const_iterator position) { this->removeElement(*position); }
    const_iterator begin() const noexcept { return const_iterator(this->tree().begin()); }
    const_iterator end() const noexcept { return const_iterator(this->tree().end()); }

    GenericCollectionInterface* getGenericInterface() const noexcept final { return const_cast<TypedKeyed*>(this); }
    std::size_t genericSize() const final { return this->size(); }
    void genericAdd(ModelElement const& e) final {
        if (!e) return;
        this->requireMemberClass(e);
        this->insertElement(e, InsertPolicy::Report);
    }
    /// A map has no positions: the element is added, and the position ignored.
    void genericEnsureAt(ModelElement const& e, unsigned long /*position*/) final { genericAdd(e); }
    void genericRemove(ModelElement const& e) final {
        if (!e) return;
        this->requireMemberClass(e);
        this->removeElement(e);
    }
    void genericClear() final { this->clear(); }
    void genericBasicClear() final { this->releaseAll(); }
    bool genericContains(ModelElement const& e) const final {
        return e && this->isMemberClass(e) && this->containsElement(e);
    }
    meta::Type getQualifierType() const final { return this->qualifierType(); }
    std::vector<Value> genericKeys() const final { return this->getAllKeys(); }

protected:
    using KeyedCore<K>::KeyedCore;
    ClassTable const& memberTable() const noexcept final { return T::classTable(); }
    meta::Class const& memberClass() const final { return T::metaClass(); }
};

/// The children of a "map owned" property: one for each key.
template <class K, class T>
class ElementMap final : public TypedKeyed<K, T, GenericMapInterface> {
    using Base = TypedKeyed<K, T, GenericMapInterface>;

public:
    ElementMap(ModelElement::Impl* owner, std::uint16_t index) noexcept : Base(owner, index, true) {}
    explicit ElementMap(meta::Property const& property) noexcept : Base(property, true) {}

    void insert(T const& e, InsertPolicy policy = InsertPolicy::Report) { this->insertElement(e, policy); }
    void insert(T const& e, int policy) { this->insertElement(e, static_cast<InsertPolicy>(policy)); }
    void add(T const& e) { insert(e); }
    /// The member with that key, or an empty handle.
    T find(KeyResult<K> key) const {
        ModelElement const* const found = this->findKey(key);
        return found == nullptr ? T() : asHandle<T>(*found);
    }
    T operator[](KeyResult<K> key) const { return find(key); }
    bool contains(T const& e) const { return Base::contains(e); }
    bool containsKey(KeyResult<K> key) const { return this->findKey(key) != nullptr; }

    ModelElement genericGet(Value const& key) const override;
    std::unique_ptr<AbstractOwnedCollection> detachedCopy() const override {
        return this->filled(new ElementMap(this->getCollectionProperty()));
    }
};

/// The children of a "multimap owned" property: any number for each key.
template <class K, class T>
class ElementMultimap final : public TypedKeyed<K, T, GenericMultimapInterface> {
    using Base = TypedKeyed<K, T, GenericMultimapInterface>;

public:
    ElementMultimap(ModelElement::Impl* owner, std::uint16_t index) noexcept : Base(owner, index, false) {}
    explicit ElementMultimap(meta::Property const& property) noexcept : Base(property, false) {}

    void insert(T const& e) { this->insertElement(e, InsertPolicy::Report); }
    void add(T const& e) { insert(e); }
    /// The members with that key, in order of insertion.
    std::vector<T> find(KeyResult<K> key) const {
        std::vector<T> result;
        auto const range = this->tree().equal_range(key);
        for (auto i = range.first; i != range.second; ++i) result.push_back(asHandle<T>(i->second));
        return result;
    }
    bool containsKey(KeyResult<K> key) const { return this->findKey(key) != nullptr; }

    std::vector<ModelElement> genericGet(Value const& key) const override;
    std::unique_ptr<AbstractOwnedCollection> detachedCopy() const override {
        return this->filled(new ElementMultimap(this->getCollectionProperty()));
    }
};

}  // namespace quay::zero

#include <quay/zero/value.h>

namespace quay::zero {

template <class K, class T>
ModelElement ElementMap<K, T>::genericGet(Value const& key) const {
    ModelElement const* const found = this->findKey(key.getValue<K>());
    return found == nullptr ? ModelElement() : *found;
}

template <class K, class T>
std::vector<ModelElement> ElementMultimap<K, T>::genericGet(Value const& key) const {
    std::vector<ModelElement> result;
    auto const range = this->tree().equal_range(key.getValue<K>());
    for (auto i = range.first; i != range.second; ++i) result.push_back(i->second);
    return result;
}

}  // namespace quay::zero
