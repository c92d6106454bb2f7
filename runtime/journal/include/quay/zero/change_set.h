// Change sets: what a commit, an undo or a redo changed, for listeners.
#pragma once

#include <quay/zero/owned_collection.h>
#include <quay/zero/undo_log.h>
#include <quay/zero/value.h>

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

namespace quay::zero {

class ChangeSet;

/// One changed element that existed before and still exists.
class QUAY_ZERO_API ElementChange {
public:
    ModelElement const& element() const noexcept { return element_; }
    /// The changed properties, by rising index.
    std::vector<meta::Property> properties() const;
    /// The value before; for a property that didn't change, an empty and untyped value. The old content of a
    /// collection is put together when it is first asked for, and the value points at a copy that the change set owns.
    Value oldValue(meta::Property const& property) const;
    /// The value now; the value of a collection points at the collection itself.
    Value newValue(meta::Property const& property) const;

private:
    friend class ChangeSet;
    struct Part {
        std::uint16_t index;
        Cell* old;                            // of a single value; else null
        AbstractOwnedCollection* collection;  // of several values; else null
    };
    ElementChange(ChangeSet const& set, ModelElement element) : set_(&set), element_(std::move(element)) {}

    ChangeSet const* set_;
    ModelElement element_;
    std::vector<Part> parts_;
};

/// The changes that listeners are told. It is valid only during the call of the listener, which may keep what it read
/// but not the set itself.
class QUAY_ZERO_API ChangeSet {
public:
    /// The created elements in order of creation, and the destroyed ones in order of destruction. Elements that were
    /// both created and destroyed by the transaction are in neither.
    std::vector<ModelElement> const& created() const noexcept { return created_; }
    std::vector<ModelElement> const& destroyed() const noexcept { return destroyed_; }
    /// The changed elements, in no particular order.
    std::vector<ElementChange> const& changed() const noexcept { return changed_; }
    bool empty() const noexcept { return created_.empty() && destroyed_.empty() && changed_.empty(); }

    ChangeSet(ChangeSet const&) = delete;
    ChangeSet& operator=(ChangeSet const&) = delete;

private:
    friend class Journal;
    friend class ElementChange;

    /// The changes of a transaction that is being committed. Elements born at that serial or later are new.
    ChangeSet(ElementDirectory const& elements, UndoLog& log, std::uint64_t bornSince);
    /// The changes of a log that was undone or redone, with the births and deaths that this caused.
    ChangeSet(UndoLog& log, LifeChanges lives);

    template <class IsNew>
    void collect(IsNew const& isNew);
    bool isChanged(AbstractOwnedCollection& collection) const;
    AbstractOwnedCollection& oldContent(AbstractOwnedCollection& collection) const;
    /// Whether the change set of such a transaction would be empty; cheap if it wouldn't.
    static bool isNothingLeft(ElementDirectory const& elements, UndoLog& log, std::uint64_t bornSince);

    /// A collection that has steps in the log, in the order in which they are reversed.
    struct Touched {
        std::vector<Step*> steps;
        bool isChange = false;                                // false while all that was done is to resolve proxies
        std::unique_ptr<AbstractOwnedCollection> oldContent;  // null until first requested
    };

    UndoLog& log_;
    std::vector<ModelElement> created_;
    std::vector<ModelElement> destroyed_;
    std::vector<ElementChange> changed_;
    mutable std::unordered_map<AbstractOwnedCollection*, Touched> touched_;
};

}  // namespace quay::zero
