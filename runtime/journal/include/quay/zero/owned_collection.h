// What the journal, change sets and values know of a collection of an element.
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
    /// "Class.property", for messages; empty for a detached collection.
    std::u16string describe() const;

    virtual meta::Type getCollectionType() const = 0;
    virtual bool empty() const noexcept = 0;
    /// Empty, and without proxies that stand apart.
    virtual bool holdsNothing() const noexcept { return empty(); }
    virtual std::size_t size() const noexcept = 0;
    /// Makes the content that of another collection of the same class.
    virtual void copyContents(AbstractOwnedCollection const& other) = 0;
    /// Makes the content that of another collection of the same class, or empty for null, and records it. Opens no
    /// transaction.
    virtual void basicCopyContents(AbstractOwnedCollection const* other) = 0;
    virtual void clear() = 0;
    /// Makes the content that of a value: one that points at a collection, or holds a container, of members that fit.
    /// CannotCastIncompatibleTypes for any other.
    virtual void assignValue(Value const& value) = 0;
    /// Called before the collection is handed out for reading: a map resolves its proxies.
    virtual void prepareForReading() {}

    /// Announces a change to the owner; to be called before it. Without an open transaction it records nothing, and the
    /// history ends.
    virtual void modifying() = 0;

    // --- For the journal and change sets. A collection overrides what reverses the kinds of step that it records.

    /// Each reverses the step, which then tells of the opposite change. Must not allocate.
    virtual void exchangeRun(RunStep& /*step*/) noexcept {}
    virtual void exchangeMember(MemberStep& /*step*/) noexcept {}
    virtual void exchangeEntry(EntryStep& /*step*/) noexcept {}
    virtual void exchangeProxy(ProxyStep& /*step*/) noexcept {}
    virtual void exchangeContent(ContentStep& /*step*/) noexcept {}
    /// Makes room in the step for the members that `exchangeRun` would take out, so that they are kept.
    virtual void prepareRun(RunStep& /*step*/) {}
    /// A detached copy of the present content.
    virtual std::unique_ptr<AbstractOwnedCollection> detachedCopy() const = 0;
    /// Whether the content counts as the old one: both are empty, or both have exactly one member and it is the same.
    virtual bool sameByRule(AbstractOwnedCollection const& old) const = 0;

protected:
    AbstractOwnedCollection(ModelElement::Impl* owner, std::uint16_t index) noexcept
        : owner_(owner), index_(index), detached_(false) {}
    /// A detached collection; the property may be empty.
    explicit AbstractOwnedCollection(meta::Property const& property, bool eachOnce = false) noexcept;

    bool isDetached() const noexcept { return detached_; }
    /// A detached sequence that has each member once.
    bool hasEachOnce() const noexcept { return eachOnce_; }

private:
    union {
        ModelElement::Impl* owner_;
        ModelElement::Impl* property_;  // of a detached collection, which nobody else could ask for it
    };
    std::uint16_t index_;
    bool detached_;
    bool eachOnce_ = false;
};

}  // namespace quay::zero
