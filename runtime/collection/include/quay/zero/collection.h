// Base classes of collections: how a change is announced and recorded, and what all collections of elements share.
#pragma once

#include <quay/zero/model.h>
#include <quay/zero/owned_collection.h>
#include <quay/zero/step.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace quay::zero {

class GenericCollectionInterface;

/// Encloses one change of a collection in a savepoint: the change is rolled back unless `commit` is reached. Does
/// nothing for a detached collection. Fails if the owner is dead or a proxy.
class QUAY_ZERO_API AbstractOwnedCollection::Operation {
public:
    explicit Operation(AbstractOwnedCollection& collection);
    ~Operation() = default;
    Operation(Operation const&) = delete;
    Operation& operator=(Operation const&) = delete;

    void commit();

private:
    std::optional<Savepoint> savepoint_;
};

/// A collection that records its changes in the journal of its owner's model.
class QUAY_ZERO_API RecordedCollection : public AbstractOwnedCollection {
public:
    void modifying() final;

protected:
    using AbstractOwnedCollection::AbstractOwnedCollection;

    /// To be called before every change. Whether the change must be recorded.
    bool recording() const { return !isDetached() && journal().admit(*owner()) == Admission::Recorded; }
    /// Reserves memory for one step, so that `record` can't fail.
    void reserveStep() const { journal().reserveSteps(1); }
    template <class C>
    void record(C change) noexcept {
        journal().record(std::move(change));
    }
    /// Records a step of the resolution in progress, if the owner's changes are recorded.
    template <class C>
    void recordResolution(C change) noexcept {
        if (!isDetached()) journal().recordResolution(std::move(change), *owner());
    }
    /// To be called when elements enter: notes in the owner that it owns elements.
    void noteContent() noexcept {
        if (!isDetached()) owner()->noteOwned();
    }
    /// Records that one member enters a sequence at that position. If it continues the run of insertions of the
    /// previous step, that step is extended instead.
    void recordInsertion(std::size_t position);

    Journal& journal() const noexcept { return owner()->model().journal(); }
};

/// Base of collections of elements. Every element in it has the owner as its container.
class QUAY_ZERO_API ReferenceCollection : public RecordedCollection {
public:
    /// Whether the property owns its elements: true for every collection here.
    bool isComposite() const noexcept { return true; }

    /// The class of the members.
    meta::Type getCollectionType() const override;

    /// The members, without those that are proxies and can't be resolved.
    virtual std::vector<ModelElement> getAllValues() const = 0;
    /// The members, followed by the proxies that are kept apart from them; nothing is resolved.
    virtual std::vector<ModelElement> getAllValuesAndProxies() const = 0;

    /// The reflective interface, which scripts and generic code use.
    virtual GenericCollectionInterface* getGenericInterface() const noexcept = 0;

    virtual void replaceProxy(ModelElement const& e, unsigned long index) = 0;
    virtual void resolveAll() = 0;
    virtual void resolveLocal() = 0;
    virtual bool basicContainsProxyTo(ModelElement const& e) = 0;

    void assignValue(Value const& value) final;
    void basicCopyContents(AbstractOwnedCollection const* other) final {
        other == nullptr ? basicClear() : basicCopyValues(static_cast<ReferenceCollection const&>(*other));
    }

    // Operations without checks: they change the content and record the change, but never open a transaction.
    virtual void basicAdd(ModelElement const& e) = 0;
    virtual void basicAddWithProxy(ModelElement const& e) { basicAdd(e); }
    /// Removes every occurrence; nothing if the element isn't a member.
    virtual void basicRemove(ModelElement const& e) = 0;
    virtual void basicClear() = 0;
    virtual void basicCopyValues(ReferenceCollection const& other) = 0;

    /// Fails unless the owner may be written and the element may enter: see ModelElement::Impl::requireWritable and
    /// checkCompatibleModel.
    void checkCompatibleModel(ModelElement::Impl* e) const;
    /// The element that the proxy stands for if it may replace the proxy here, else the proxy itself.
    ModelElement resolveProxy(ModelElement const& e) const;
    /// What a proxy resolves to without loading anything.
    ModelElement peekResolveProxy(ModelElement const& e) const;

protected:
    using RecordedCollection::RecordedCollection;

    /// CannotAddIncompatibleTypes unless the element is of the members' class.
    void requireMemberClass(ModelElement const& e) const;
    bool isMemberClass(ModelElement const& e) const noexcept;
    /// Takes over a new, detached collection of the same class, and copies the members into it.
    std::unique_ptr<AbstractOwnedCollection> filled(ReferenceCollection* made) const;
    /// The class table of the members.
    virtual ClassTable const& memberTable() const noexcept = 0;
    virtual meta::Class const& memberClass() const = 0;

    /// `contain` makes the owner the container of a new member, which leaves its former container. `release` leaves a
    /// removed member without a container.
    void contain(ModelElement::Impl* e) const;
    void release(ModelElement::Impl* e) const;
};

}  // namespace quay::zero
