// What a model records of its changes: the open transaction with its savepoints, and the history.
//
// A savepoint is one nesting of a transaction; the outermost savepoint is the transaction itself. Savepoints have
// rising serials. An element's track word holds the serial of the savepoint at which it was born, or points at its
// latest storage.
//
// Invariants:
// - `serial_` is the serial of the innermost open savepoint. While none is open, it is 0 if the model has neither a
//   listener nor a history (the model is quiet), and above every serial otherwise. While the model is locked, it is
//   above every serial as well, so that every change asks `admit`, which refuses it. So one comparison tells whether a
//   value must be recorded: it needn't be if the element was born, or the value kept, at `serial_` or later.
// - Changes of an element that was born at the innermost savepoint aren't recorded: undoing its birth is enough. When a
//   savepoint commits, what it recorded of elements that were born at the savepoint around it is discarded.
// - An element has at most one storage for each savepoint. Its track word points at the latest one, and each storage
//   keeps the track word before it. Committing a savepoint merges only its own storages into those of the savepoint
//   around it.
// - Steps, births and deaths are reversed in exactly the reverse order of recording, so that each is reversed on the
//   content that it left.
// - All that can fail (creating the new value, reserving memory for the record) happens before anything changes.
//   Rolling back, undoing and discarding allocate nothing.
// - A commit that changed nothing in the end, or only resolved proxies, isn't kept by the history. Resolutions are kept
//   beside it (`History::resolved`), since the proxies must be restored before older changes can be undone.
#pragma once

#include <quay/zero/element_directory.h>
#include <quay/zero/listeners.h>
#include <quay/zero/undo_log.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace quay::zero {

class ChangeSet;
class History;

/// The interface through which the journal releases elements; the model implements it.
class QUAY_ZERO_API JournalOwner : public ElementImpl {
public:
    /// Releases an element that is dead and that nothing can bring back.
    virtual void release(ModelElement::Impl& e) noexcept = 0;

protected:
    using ElementImpl::ElementImpl;
};

/// How a change is to be recorded.
enum class Admission : std::uint8_t {
    Unrecorded,        ///< not at all: the change may be made
    Recorded,          ///< by `record`, before the change is made
    Alone,             ///< by `recordAlone`: the change is a transaction of its own, for the history only
    NeedsTransaction,  ///< open a transaction, and call `admit` again
};

/// Records the changes of a model. Before every change of an element, `admit` must be called, which tells how to record
/// it.
class QUAY_ZERO_API Journal final : private UndoLog::Disposal {
public:
    using Element = ModelElement::Impl;

    Journal(JournalOwner& owner, ElementDirectory& elements, Listeners& listeners) noexcept;
    ~Journal();
    Journal(Journal const&) = delete;
    Journal& operator=(Journal const&) = delete;

    // --- Savepoints. Transaction, Savepoint and ImplicitTransaction use these functions.

    /// Opens a savepoint and returns its serial. `system`: if it is the outermost one, no listener is told and nothing
    /// enters the history. `isOperation`: a Savepoint inside it opens nothing. Raises ModelIsFrozen,
    /// ListenerMayNotWrite.
    std::uint64_t open(bool system, bool isOperation = false);
    bool inTransaction() const noexcept { return !savepoints_.empty(); }
    /// Raises ModelIsFrozen, ListenerMayNotWrite.
    void requireUnlocked() const {
        if (listeners_.isLocked()) listeners_.requireUnlocked();
    }
    /// Whether the innermost savepoint was opened with `isOperation`.
    bool inOperation() const noexcept { return !savepoints_.empty() && savepoints_.back().isOperation; }
    bool isOpen(std::uint64_t serial) const noexcept;
    /// Commits the savepoint of that serial, or the innermost one for 0. Savepoints inside it are rolled back first. If
    /// committing fails for lack of memory, it throws and the savepoint stays open.
    void commit(std::uint64_t serial);
    void rollBack(std::uint64_t serial) noexcept;

    // --- Recording.

    /// To be called before every change of an element except that of a single value. The change must be recorded if a
    /// transaction is open and the element is older than its innermost savepoint. Without a transaction nothing is
    /// recorded, and the history is cleared, since older changes couldn't be undone any more. Raises
    /// ListenerMayNotWrite, ModelIsFrozen.
    Admission admit(Element const& changed) {
        if (inTransaction() && !listeners_.isLocked())
            return isBornHere(changed) ? Admission::Unrecorded : Admission::Recorded;
        if (history_ || listeners_.isLocked()) endHistory();
        return Admission::Unrecorded;
    }
    /// To be called before a single value of an element changes. If the change must be recorded but no transaction is
    /// open, it is a transaction of its own.
    Admission admit(Element const& changed, PropertyDescriptor const& value) const noexcept {
        if (isRecorded(changed, value)) return Admission::Unrecorded;
        if (inTransaction() && !listeners_.isLocked()) return Admission::Recorded;
        bool const isForHistoryAlone = history_ && !listeners_.any() && !listeners_.isLocked();
        return isForHistoryAlone ? Admission::Alone : Admission::NeedsTransaction;
    }
    /// Whether an old value needn't be recorded: the element was born, or the value kept, at the innermost savepoint;
    /// or the model is quiet.
    bool isRecorded(Element const& e, PropertyDescriptor const& descriptor) const noexcept {
        if (e.track_.isBirth()) return e.track_.isBornSince(serial_);
        Storage const& s = e.track_.storage();
        return s.tracking().serial >= serial_ && s.has(descriptor);
    }
    /// Like `isRecorded`, but may return false for a value that is recorded, in order not to call a function.
    bool isSurelyRecorded(Element const& e, PropertyDescriptor const& descriptor) const noexcept {
        if (e.track_.isBirth()) return e.track_.isBornSince(serial_);
        Storage const& s = e.track_.storage();
        return s.tracking().serial >= serial_ && s.hasFirst(descriptor);
    }
    bool isBornHere(Element const& e) const noexcept { return e.track_.isBornSince(serial_); }

    /// A cell for the old value of a property that isn't recorded yet. The caller fills it at once, without throwing.
    Cell& record(Element& element, PropertyDescriptor const& descriptor);
    /// Adds a transaction of one old value to the history. The caller fills the cell at once, without throwing.
    Cell& recordAlone(Element& element, PropertyDescriptor const& descriptor);
    /// To be called when a value is written that may equal the old one without being the same. At the commit, a value
    /// that equals the old one becomes the old one again, so that a property that counts as unchanged is unchanged.
    void noteMayDiffer() noexcept { mayDiffer_ = true; }
    /// Reserves memory for further steps, so that recording them can't fail.
    void reserveSteps(std::size_t more) { log_.reserveSteps(more); }
    /// Records a change for which `admit` returned Recorded. Memory for the step must be reserved.
    template <class C>
    void record(C change) noexcept {
        log_.steps.emplace_back(std::move(change));
    }
    /// The last step that was recorded at the innermost savepoint, so that the next change may be merged into it; null
    /// if there is none.
    Step* lastStep() noexcept;
    /// Enters the element in the model, and records that.
    void recordBirth(Element& element);
    /// Makes the element dead, and records that. The log takes over the model's reference.
    void recordDeath(Element& element);
    /// Sets the child's container, and records that if necessary. The collection or slot of the container isn't
    /// changed.
    void setContainer(Element& child, Element* container, std::uint16_t index);

    // --- Resolution of proxies. It isn't a change, but must be reversed before older changes can be undone.

    /// Reserves memory for that many steps of a resolution.
    void reserveResolution(std::size_t steps);
    /// Records a step of the resolution in progress, if changes of `changed` are recorded. Memory must be reserved.
    template <class C>
    void recordResolution(C change, Element const& changed) noexcept {
        UndoLog* const log = resolutionLog();
        if (log == nullptr || (inTransaction() && isBornHere(changed))) return;
        log->steps.emplace_back(std::move(change), true);
    }
    /// Sets the child's container as part of a resolution. Memory for the step must be reserved.
    void resolveContainer(Element& child, Element* container, std::uint16_t index) noexcept;

    // --- History.

    /// Keeps the last `limit` transactions; 0 discards all and keeps none. Raises ListenerMayNotWrite.
    void enableHistory(std::size_t limit);
    std::size_t undoDepth() const noexcept;
    std::size_t redoDepth() const noexcept;
    /// Undoes or redoes a transaction. Returns whether there was one. Raises TransactionIsOpen, ListenerMayNotWrite,
    /// ModelIsFrozen.
    bool replay(bool redo);
    void forgetHistory() noexcept;

    /// To be called after a listener was added or removed, or a lock changed.
    void refresh() noexcept;

private:
    struct OpenSavepoint {
        OpenSavepoint(std::uint64_t number, UndoLog const& log, bool isSystem, bool ofOperation) noexcept;

        std::uint64_t serial;
        std::size_t lives;
        std::size_t steps;
        Storage* storages;  // the latest storage that is older than the savepoint
        bool system;
        bool isOperation;
    };

    void close() noexcept;
    void rollBackTo(OpenSavepoint const& savepoint) noexcept;
    void commitInner();
    void joinStorages(OpenSavepoint const& inner, std::uint64_t outer) noexcept;
    void eraseStepsOfNewborn(std::size_t from, std::uint64_t serial) noexcept;
    void mergeAt(OpenSavepoint const& savepoint) noexcept;
    void commitOutermost();
    void restoreEqualValues();
    void commitUnrecorded(bool system) noexcept;
    void reverseSteps() noexcept;
    void finish(bool keep) noexcept;
    void tell(ChangeSet const& changes) noexcept;
    void endHistory();
    UndoLog* resolutionLog() noexcept;

    void giveBack(Storage& storage) noexcept override { pool_.giveBack(storage); }
    void release(Element& e) noexcept override { owner_.release(e); }

    std::uint64_t serial_ = 0;
    std::vector<OpenSavepoint> savepoints_;
    std::unique_ptr<History> history_;
    UndoLog log_;
    StoragePool pool_;
    std::uint64_t lastSerial_ = 0;
    bool mayDiffer_ = false;
    JournalOwner& owner_;
    ElementDirectory& elements_;
    Listeners& listeners_;
};

}  // namespace quay::zero
