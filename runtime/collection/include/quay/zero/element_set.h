// Sets of children.
#pragma once

#include <quay/zero/collection_with_proxies.h>
#include <quay/zero/generic_collection.h>

#include <cstddef>
#include <iterator>
#include <memory>
#include <unordered_set>
#include <vector>

namespace quay::zero {

/// The base of sets of any class. Looking up, adding and removing cost constant time. Proxies are kept apart from the
/// members until they are resolved.
class QUAY_ZERO_API SetCore : public CollectionWithProxies, public GenericCollectionInterface {
public:
    using Members = std::unordered_set<ModelElement>;

    bool empty() const noexcept final { return members_.empty(); }
    std::size_t size() const noexcept final { return members_.size(); }
    /// The members as they are stored: nothing is resolved.
    Members const& members() const noexcept { return members_; }

    /// Adds an element. An empty or dead handle, and an element that is a member already, is ignored. Fails as
    /// ModelElement::Impl::checkCompatibleModel does. The element leaves its former container.
    void addElement(ModelElement const& e);
    bool containsElement(ModelElement const& e) const;
    void removeElement(ModelElement const& e);
    /// Removes all members, which stay alive without a container.
    void clear() final;

    // ReferenceCollection
    void copyContents(AbstractOwnedCollection const& other) final;
    std::vector<ModelElement> getAllValues() const final;
    GenericCollectionInterface* getGenericInterface() const noexcept final { return const_cast<SetCore*>(this); }
    void basicAdd(ModelElement const& e) final;
    void basicAddWithProxy(ModelElement const& e) final;
    void basicRemove(ModelElement const& e) final;
    void basicClear() final;
    void basicCopyValues(ReferenceCollection const& other) final;

    // GenericCollectionInterface
    std::size_t genericSize() const final { return size(); }
    void genericAdd(ModelElement const& e) final;
    void genericEnsureAt(ModelElement const& e, unsigned long /*position*/) final { genericAdd(e); }
    void genericRemove(ModelElement const& e) final;
    void genericClear() final { clear(); }
    void genericBasicClear() final { basicClear(); }
    bool genericContains(ModelElement const& e) const final;

    // AbstractOwnedCollection
    void exchangeEntry(EntryStep& step) noexcept final;
    void exchangeContent(ContentStep& step) noexcept final;
    bool sameByRule(AbstractOwnedCollection const& old) const final;

protected:
    SetCore(ModelElement::Impl* owner, std::uint16_t index) noexcept : CollectionWithProxies(owner, index) {}
    explicit SetCore(meta::Property const& property) noexcept : CollectionWithProxies(property) {}
    ~SetCore() override;

    /// The members after resolving the proxies that can be resolved. While resolution is held, nothing is resolved.
    Members const& resolvedMembers() const;

private:
    struct Taken;
    struct Content;

    void put(ModelElement const& e);
    void take(ModelElement const& e);
    void swapContent(Content&& content);
    bool resolveAdd(ModelElement const& e) final;
    void appendMembers(std::vector<ModelElement>& to) const final { to.assign(members_.begin(), members_.end()); }

    Members members_;
};

/// The children of a "set owned" property of class T. Iterates in no particular order.
template <class T>
class UnorderedElementSet final : public SetCore {
public:
    using value_type = T;

    UnorderedElementSet(ModelElement::Impl* owner, std::uint16_t index) noexcept : SetCore(owner, index) {}
    explicit UnorderedElementSet(meta::Property const& property) noexcept : SetCore(property) {}

    void add(T const& e) { addElement(e); }
    void insert(T const& e) { addElement(e); }
    bool contains(T const& e) const { return containsElement(e); }
    void remove(T const& e) { removeElement(e); }

    class const_iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = T const*;
        using reference = T const&;

        const_iterator() noexcept = default;
        explicit const_iterator(Members::const_iterator at) noexcept : at_(at) {}
        reference operator*() const noexcept { return asHandle<T>(*at_); }
        pointer operator->() const noexcept { return &**this; }
        const_iterator& operator++() noexcept {
            ++at_;
            return *this;
        }
        const_iterator operator++(int) noexcept { return const_iterator(at_++); }
        friend bool operator==(const_iterator a, const_iterator b) noexcept { return a.at_ == b.at_; }

    private:
        Members::const_iterator at_;
    };
    using iterator = const_iterator;

    const_iterator begin() const { return const_iterator(resolvedMembers().begin()); }
    const_iterator end() const noexcept { return const_iterator(members().end()); }

    std::unique_ptr<AbstractOwnedCollection> detachedCopy() const override {
        return filled(new UnorderedElementSet(getCollectionProperty()));
    }

protected:
    ClassTable const& memberTable() const noexcept override { return T::classTable(); }
    meta::Class const& memberClass() const override { return T::metaClass(); }
};

}  // namespace quay::zero
