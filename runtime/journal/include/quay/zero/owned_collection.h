// The interface of collections for the journal, change sets and values.
#pragma once

#include <quay/zero/meta/handles.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace quay::zero {

struct ContentStep;
struct EntryStep;
struct MemberStep;
struct ProxyStep;
struct RunStep;

/// Base of every collection. A collection is a member of its element, or detached: a copy without an owner, which
/// records nothing. Changing operations run inside an Operation; those named `basic...` open none.
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
    /// "Class.property", for messages; empty for a detached collection.
    std::u16string describe() const;

    virtual meta::Type getCollectionType() const = 0;
    virtual bool empty() const noexcept = 0;
    /// Whether there are neither members nor proxies that are kept apart.
    virtual bool holdsNothing() const noexcept { return empty(); }
    virtual std::size_t size() const noexcept = 0;
    /// Replaces the content by that of another collection of the same class.
    virtual void copyContents(AbstractOwnedCollection const& other) = 0;
    /// Replaces the content by that of another collection of the same class, or clears it for null, and records that.
    /// Opens no transaction.
    virtual void basicCopyContents(AbstractOwnedCollection const* other) = 0;
    virtual void clear() = 0;
    /// Replaces the content by that of a value which points at a collection, or holds a container, of suitable members.
    /// CannotCastIncompatibleTypes for any other value.
    virtual void assignValue(Value const& value) = 0;
    /// Called before the collection is handed out for reading: a map resolves its proxies.
    virtual void prepareForReading() {}

    /// Announces a change to the owner; to be called before the change. Without an open transaction nothing is
    /// recorded, and the history is cleared.
    virtual void modifying() = 0;

    // --- For the journal and change sets. A collection overrides the functions for the kinds of step that it records.

    /// Each of these reverses the step, which then describes the opposite change. Must not allocate.
    virtual void exchangeRun(RunStep& /*step*/) noexcept {}
    virtual void exchangeMember(MemberStep& /*step*/) noexcept {}
    virtual void exchangeEntry(EntryStep& /*step*/) noexcept {}
    virtual void exchangeProxy(ProxyStep& /*step*/) noexcept {}
    virtual void exchangeContent(ContentStep& /*step*/) noexcept {}
    /// Reserves memory in the step for the members that `exchangeRun` would take out.
    virtual void prepareRun(RunStep& /*step*/) {}
    /// A detached copy of the present content.
    virtual std::unique_ptr<AbstractOwnedCollection> detachedCopy() const = 0;
    /// Whether the content counts as unchanged: both are empty, or both have exactly one member and it is the same.
    virtual bool sameByRule(AbstractOwnedCollection const& old) const = 0;

protected:
    AbstractOwnedCollection(ModelElement::Impl* owner, std::uint16_t index) noexcept
        : owner_(owner), index_(index), detached_(false) {}
    /// A detached collection; the property may be an empty handle.
    explicit AbstractOwnedCollection(meta::Property const& property, bool eachOnce = false) noexcept;

    bool isDetached() const noexcept { return detached_; }
    /// Whether this is a detached sequence that holds each member at most once.
    bool hasEachOnce() const noexcept { return eachOnce_; }

private:
    union {
        ModelElement::Impl* owner_;
        ModelElement::Impl* property_;  // of a detached collection, which can't ask an owner for it
    };
    std::uint16_t index_;
    bool detached_;
    bool eachOnce_ = false;
};

}  // namespace quay::zero
