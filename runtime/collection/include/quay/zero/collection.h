// What all collections of an element do alike: how they announce and record changes, and what those of elements share.
#pragma once

#include <quay/zero/model.h>
#include <quay/zero/owned_collection.h>
#include <quay/zero/step.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace quay::zero {

class GenericCollectionInterface;

/// Brackets one change of a collection by a savepoint: what was done since is undone unless `commit` is reached. On a
/// detached collection it does nothing. Refuses dead and proxy owners.
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

    /// To be called before every change. Answers whether it must be recorded.
    bool recording() const { return !isDetached() && journal().admit(*owner()) == Admission::Recorded; }
    /// Makes room for one step, so that `record` can't fail.
    void reserveStep() const { journal().reserveSteps(1); }
    void record(Step::Change&& change) noexcept { journal().record(Step(std::move(change))); }
    /// Records a step of the resolution under way, if the owner needs one.
    void recordResolution(Step::Change&& change) noexcept {
        if (!isDetached()) journal().recordResolution(std::move(change), *owner());
    }
    /// Elements come in: the owner is told that it owns something.
    void noteContent() noexcept {
        if (!isDetached()) owner()->noteOwned();
    }
    /// Records that one member enters a sequence at that position. If the previous step was one of the same run, that
    /// grows by the member.
    void recordInsertion(std::size_t position);

    Journal& journal() const noexcept { return owner()->model().journal(); }
};

/// Base of collections of elements. Every element in it has the owner as its container.
class QUAY_ZERO_API ReferenceCollection : public RecordedCollection {
public:
    /// The property owns its elements: true of every collection here.
    bool isComposite() const noexcept { return true; }

    /// The class of the members.
    meta::Type getCollectionType() const override;

    /// Resolved members; those that stay proxies are left out.
    virtual std::vector<ModelElement> getAllValues() const = 0;
    /// Members first, proxies that stand apart after them; nothing is resolved.
    virtual std::vector<ModelElement> getAllValuesAndProxies() const = 0;

    /// The reflective interface, by which scripts and generic code work.
    virtual GenericCollectionInterface* getGenericInterface() const noexcept = 0;

    virtual void replaceProxy(ModelElement const& e, unsigned long index) = 0;
    virtual void resolveAll() = 0;
    virtual void resolveLocal() = 0;
    virtual bool basicContainsProxyTo(ModelElement const& e) = 0;

    void assignValue(Value const& value) final;
    void basicCopyContents(AbstractOwnedCollection const* other) final {
        other == nullptr ? basicClear() : basicCopyValues(static_cast<ReferenceCollection const&>(*other));
    }

    // The unchecked paths: content and its record alone. Never open a transaction.
    virtual void basicAdd(ModelElement const& e) = 0;
    virtual void basicAddWithProxy(ModelElement const& e) { basicAdd(e); }
    /// Takes out every occurrence; an absent element is ignored.
    virtual void basicRemove(ModelElement const& e) = 0;
    virtual void basicClear() = 0;
    virtual void basicCopyValues(ReferenceCollection const& other) = 0;

    /// Fails unless the owner may be written and the element may enter: see ModelElement::Impl::requireWritable and
    /// checkCompatibleModel.
    void checkCompatibleModel(ModelElement::Impl* e) const;
    /// The element that may take the proxy's place here, or the proxy itself.
    ModelElement resolveProxy(ModelElement const& e) const;
    /// What a proxy resolves to without loading anything.
    ModelElement peekResolveProxy(ModelElement const& e) const;

protected:
    using RecordedCollection::RecordedCollection;

    /// CannotAddIncompatibleTypes unless the element is of the members' class.
    void requireMemberClass(ModelElement const& e) const;
    bool isMemberClass(ModelElement const& e) const noexcept;
    /// The class table of the members.
    virtual ClassTable const& memberTable() const noexcept = 0;
    virtual meta::Class const& memberClass() const = 0;

    /// The new member gets the owner as its container, leaving a former one; a released one has none.
    void contain(ModelElement::Impl* e) const;
    void release(ModelElement::Impl* e) const;
};

}  // namespace quay::zero
