// Sequences of children.
#pragma once

#include <quay/zero/collection.h>
#include <quay/zero/generic_collection.h>

#include <cstddef>
#include <iterator>
#include <memory>
#include <vector>

namespace quay::zero {

/// The base of sequences of any class. `contains`, `remove`, and inserting or erasing in the middle cost linear time.
/// An element may stand at several positions; it keeps its container until the last one is removed.
class QUAY_ZERO_API SequenceCore : public ReferenceCollection, public GenericSequenceInterface {
public:
    using Members = std::vector<ModelElement>;

    bool empty() const noexcept final { return members_.empty(); }
    std::size_t size() const noexcept final { return members_.size(); }
    /// The members as they are stored: nothing is resolved.
    Members const& members() const noexcept { return members_; }

    /// Appends. An empty or dead handle is ignored. InvalidValue or CannotCreateCrossModelAssociation as in
    /// ModelElement::Impl::checkCompatibleModel. The element leaves its former container.
    void addElement(ModelElement const& e) { insertElement(members_.size(), e); }
    /// Appends an element that was just created. To be called inside an operation, whose savepoint undoes it on
    /// failure.
    void addNewElement(ModelElement const& e);
    /// Inserts at a position, at most size(); further ones are std::out_of_range. Fails as addElement does.
    void insertElement(std::size_t position, ModelElement const& e);
    bool containsElement(ModelElement const& e) const;
    /// Removes the first occurrence; nothing if there is none.
    void removeElement(ModelElement const& e);
    void eraseAt(std::size_t position);
    /// Replaces the member at a position. CannotAddNonExistentObject for an empty or dead handle, CannotAddSecondObject
    /// for an element that a unique sequence has at another position.
    void replaceAt(std::size_t position, ModelElement const& e);
    /// Removes all members, which stay alive without a container.
    void clear() final;
    void reserve(std::size_t count) { members_.reserve(count); }

    /// The member at a position, resolved if it can be.
    ModelElement const& at(std::size_t position) const;
    std::size_t indexOf(ModelElement const& e) const noexcept;

    /// Whether there are neither members nor proxies.
    bool holdsNothing() const noexcept final { return members_.empty(); }

    // ReferenceCollection
    void copyContents(AbstractOwnedCollection const& other) final;
    std::vector<ModelElement> getAllValues() const final;
    std::vector<ModelElement> getAllValuesAndProxies() const final { return members_; }
    GenericCollectionInterface* getGenericInterface() const noexcept final { return const_cast<SequenceCore*>(this); }
    void replaceProxy(ModelElement const& e, unsigned long index) final;
    void resolveAll() final;
    void resolveLocal() final;
    bool basicContainsProxyTo(ModelElement const& e) final;
    void basicAdd(ModelElement const& e) final;
    void basicRemove(ModelElement const& e) final;
    void basicClear() final;
    void basicCopyValues(ReferenceCollection const& other) final;

    // GenericSequenceInterface
    std::size_t genericSize() const final { return size(); }
    void genericAdd(ModelElement const& e) final;
    void genericEnsureAt(ModelElement const& e, unsigned long position) final;
    void genericRemove(ModelElement const& e) final;
    void genericClear() final { clear(); }
    void genericBasicClear() final { basicClear(); }
    bool genericContains(ModelElement const& e) const final;
    ModelElement genericAt(unsigned long position) const final { return at(position); }
    void genericInsertAt(ModelElement const& e, unsigned long position) final;
    void genericSetAt(ModelElement const& e, unsigned long position) final;
    void genericRemoveAt(unsigned long position) final { eraseAt(position); }
    unsigned long genericIndexOf(ModelElement const& e) const final;

    // AbstractOwnedCollection
    void exchangeRun(RunStep& step) noexcept final;
    void exchangeMember(MemberStep& step) noexcept final;
    void exchangeContent(ContentStep& step) noexcept final;
    void prepareRun(RunStep& step) final;
    bool sameByRule(AbstractOwnedCollection const& old) const final;

protected:
    SequenceCore(ModelElement::Impl* owner, std::uint16_t index) noexcept : ReferenceCollection(owner, index) {}
    SequenceCore(meta::Property const& property, bool eachOnce) noexcept : ReferenceCollection(property, eachOnce) {}
    ~SequenceCore() override = default;

private:
    struct Kept;

    void put(std::size_t position, ModelElement const& e);
    void take(std::size_t position);
    void swapContent(Members content);
    void resolveSlot(std::size_t position) const;
    void putResolved(std::size_t position, ModelElement const& e) const;

    mutable Members members_;  // a read resolves proxies in place
};

/// The children of a "sequence owned" property of class T. A `T const&` to a position is valid until the next change.
template <class T>
class ElementSequence final : public SequenceCore {
public:
    class const_iterator;
    using iterator = const_iterator;
    using value_type = T;

    ElementSequence(ModelElement::Impl* owner, std::uint16_t index) noexcept : SequenceCore(owner, index) {}
    /// A detached sequence. A unique one holds each element at most once.
    explicit ElementSequence(meta::Property const& property, bool unique = false) noexcept
        : SequenceCore(property, unique) {}

    void add(T const& e) { addElement(e); }
    void insert(std::size_t position, T const& e) { insertElement(position, e); }
    void insert(const_iterator position, T const& e);
    bool contains(T const& e) const { return containsElement(e); }
    void remove(T const& e) { removeElement(e); }
    void erase(std::size_t position) { eraseAt(position); }
    void erase(const_iterator position);
    void set(std::size_t position, T const& e) { replaceAt(position, e); }

    /// The position isn't checked.
    T const& operator[](std::size_t position) const {
        ModelElement const& e = members()[position];
        return asHandle<T>(e.impl()->isProxy() ? at(position) : e);
    }
    const_iterator begin() const noexcept { return {*this, 0}; }
    const_iterator end() const noexcept { return {*this, size()}; }

    std::unique_ptr<AbstractOwnedCollection> detachedCopy() const override {
        return filled(new ElementSequence(getCollectionProperty()));
    }

protected:
    ClassTable const& memberTable() const noexcept override { return T::classTable(); }
    meta::Class const& memberClass() const override { return T::metaClass(); }
};

/// An iterator that holds a position. A change of the sequence doesn't invalidate it, but may leave it behind the end.
template <class T>
class ElementSequence<T>::const_iterator {
public:
    using iterator_category = std::random_access_iterator_tag;
    using value_type = T;
    using difference_type = std::ptrdiff_t;
    using pointer = T const*;
    using reference = T const&;

    const_iterator() noexcept = default;
    const_iterator(ElementSequence const& s, std::size_t position) noexcept : sequence_(&s), position_(position) {}

    reference operator*() const { return (*sequence_)[position_]; }
    pointer operator->() const { return &(*sequence_)[position_]; }
    reference operator[](difference_type n) const { return (*sequence_)[position_ + static_cast<std::size_t>(n)]; }
    const_iterator& operator++() noexcept { return *this += 1; }
    const_iterator operator++(int) noexcept { return std::exchange(*this, *this + 1); }
    const_iterator& operator--() noexcept { return *this += -1; }
    const_iterator operator--(int) noexcept { return std::exchange(*this, *this + -1); }
    const_iterator& operator+=(difference_type n) noexcept {
        position_ += static_cast<std::size_t>(n);
        return *this;
    }
    const_iterator& operator-=(difference_type n) noexcept { return *this += -n; }
    friend const_iterator operator+(const_iterator i, difference_type n) noexcept { return i += n; }
    friend const_iterator operator+(difference_type n, const_iterator i) noexcept { return i += n; }
    friend const_iterator operator-(const_iterator i, difference_type n) noexcept { return i += -n; }
    friend difference_type operator-(const_iterator a, const_iterator b) noexcept {
        return static_cast<difference_type>(a.position_) - static_cast<difference_type>(b.position_);
    }
    friend bool operator==(const_iterator a, const_iterator b) noexcept { return a.position_ == b.position_; }
    friend auto operator<=>(const_iterator a, const_iterator b) noexcept { return a.position_ <=> b.position_; }

private:
    friend class ElementSequence;
    ElementSequence const* sequence_ = nullptr;
    std::size_t position_ = 0;
};

template <class T>
void ElementSequence<T>::insert(const_iterator position, T const& e) {
    insertElement(position.position_, e);
}

template <class T>
void ElementSequence<T>::erase(const_iterator position) {
    eraseAt(position.position_);
}

}  // namespace quay::zero
