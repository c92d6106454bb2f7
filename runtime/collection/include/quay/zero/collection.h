// What all collections of an element have in common: whose they are, how they announce and record changes.
#pragma once

#include <quay/zero/meta/handles.h>
#include <quay/zero/model.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quay::zero {

class GenericCollectionInterface;

/// Base of every collection. It is a member of its element, or detached: a copy without an owner, which records
/// nothing. Changing operations run inside an Operation; `basic...` ones change content and nothing else.
class QUAY_ZERO_API AbstractOwnedCollection {
public:
    class Operation;

    AbstractOwnedCollection(AbstractOwnedCollection const&) = delete;
    AbstractOwnedCollection& operator=(AbstractOwnedCollection const&) = delete;
    virtual ~AbstractOwnedCollection() = default;

    /// The element, or null for a detached collection.
    ModelElement::Impl* owner() const noexcept { return detached_ ? nullptr : owner_; }
    /// Index of the property that this collection serves; 0 for a detached one without property.
    std::uint16_t index() const noexcept { return index_; }
    /// The property that this collection serves, or an empty handle.
    meta::Property getCollectionProperty() const;

    virtual meta::Type getCollectionType() const = 0;
    virtual bool empty() const noexcept = 0;
    /// Empty, and without proxies that stand apart.
    virtual bool holdsNothing() const noexcept { return empty(); }
    virtual std::size_t size() const noexcept = 0;
    /// Makes the content that of another collection of the same class.
    virtual void copyContents(AbstractOwnedCollection const& other) = 0;
    /// The same, or empty content for null: the content and its record alone. Never opens a transaction.
    virtual void basicCopyContents(AbstractOwnedCollection const* other) = 0;
    virtual void clear() = 0;
    /// Makes the content that of a value: one that points at a collection, or holds a container, of members that fit.
    /// CannotCastIncompatibleTypes for any other.
    virtual void assignValue(Value const& value) = 0;
    /// Called before the collection is handed out for reading: a map resolves its proxies.
    virtual void prepareForReading() {}

    /// Announces a change to the owner; to be called before it. Without an open transaction it records nothing, and the
    /// history ends.
    void modifying();

    // --- For the undo log.

    /// Reverses a step that this collection wrote, and turns it into its opposite.
    virtual void exchange(Step& step) noexcept = 0;
    /// Sets aside what `exchange` needs to keep what it takes out.
    virtual void prepare(Step& step) = 0;
    /// Lets go of what a step holds.
    virtual void discard(Step& step) noexcept = 0;
    /// A detached copy of the present content.
    virtual std::unique_ptr<AbstractOwnedCollection> detachedCopy() const = 0;
    /// Whether the content counts as the old one: both are empty, or both have exactly one member and it is the same.
    virtual bool sameByRule(AbstractOwnedCollection const& old) const = 0;

    /// "Class.property", for messages.
    std::u16string describe() const;

protected:
    AbstractOwnedCollection(ModelElement::Impl* owner, std::uint16_t index) noexcept
        : owner_(owner), index_(index), detached_(false) {}
    /// A detached collection; the property may be empty.
    explicit AbstractOwnedCollection(meta::Property const& property, bool eachOnce = false) noexcept;
    /// A detached sequence that has each member once.
    bool hasEachOnce() const noexcept { return eachOnce_; }

    /// Whether the change that follows must be recorded: there is a transaction, and the owner is older than its
    /// innermost level.
    bool recording() const {
        if (detached_) return false;
        ModelImpl& model = owner_->model();
        if (!model.inTransaction()) {
            model.noteUnrecorded();
            return false;
        }
        return !model.isBornHere(*owner_);
    }
    Step& record(StepKind kind) { return owner_->model().recordStep(kind, this); }
    /// The same for a resolution under way; null if it needs no record.
    Step* recordResolution(StepKind kind) noexcept {
        return detached_ ? nullptr : owner_->model().recordResolution(kind, this, *owner_);
    }
    /// Elements come in: the owner is told that it owns something.
    void noteContent() noexcept {
        if (!detached_) owner_->noteOwned();
    }

private:
    union {
        ModelElement::Impl* owner_;
        ElementImpl* property_;  // of a detached collection, which nobody else could ask for it
    };
    std::uint16_t index_;
    bool detached_;
    bool eachOnce_ = false;
};

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

/// Base of collections of elements. Every element in it has the owner as its container.
class QUAY_ZERO_API ReferenceCollection : public AbstractOwnedCollection {
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
    using AbstractOwnedCollection::AbstractOwnedCollection;

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
