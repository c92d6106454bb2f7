// What a model records of its changes: the open transaction with its savepoints, and the history.
//
// Words. A savepoint is one nesting of a transaction; the outermost savepoint is the transaction itself. Savepoints
// have rising serials. An element's track word is the serial of the savepoint at which it was born, or its latest
// storage.
//
// Invariants.
// - `serial_` is that of the innermost open savepoint. While none is open it is 0 if the model is quiet (no listener,
// no
//   history, no lock), and above every serial otherwise. So one comparison tells whether a value must be recorded: it
//   needn't if the element was born, or the value kept, at `serial_` or later.
// - What an element does that was born at the innermost savepoint isn't recorded: taking back its birth is enough. When
//   a savepoint commits, what it recorded of elements that the savepoint around it gave birth to is dropped.
// - An element has at most one storage a savepoint, and its track word leads to the latest; each storage knows the
// track
//   word before it. Committing a savepoint merges only its own storages into those of the savepoint around it.
// - Steps and lives are reversed in exactly the reverse order in which they were recorded, so each finds the content
//   that it left.
// - All that can fail happens before anything changes: making the new value, making room for the record. Rolling back,
//   undoing and letting go allocate nothing.
// - A commit that changed nothing in the end, or only resolved proxies, isn't kept by the history. Resolutions are kept
//   beside it (`History::resolved`): before anything is undone the proxies must be back.
#pragma once

#include <quay/zero/element_directory.h>
#include <quay/zero/history.h>
#include <quay/zero/listeners.h>
#include <quay/zero/undo_log.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace quay::zero {

/// What a model is to its journal.
class QUAY_ZERO_API JournalOwner : public ElementImpl {
public:
    /// An element that nothing can bring back leaves the model for good.
    virtual void release(ModelElement::Impl& e) noexcept = 0;

protected:
    using ElementImpl::ElementImpl;
};

/// What is to be done about a change.
enum class Admission : std::uint8_t {
    Unrecorded,        ///< nothing: it may be made
    Recorded,          ///< `record` it before it is made
    Alone,             ///< `recordAlone`: it is a transaction of which only the history hears
    NeedsTransaction,  ///< open one, and ask again
};

/// Every change of every element passes through `admit`, and is recorded if that is the answer.
class QUAY_ZERO_API Journal final : private UndoLog::Disposal {
public:
    using Element = ModelElement::Impl;

    Journal(JournalOwner& owner, ElementDirectory& elements, Listeners& listeners) noexcept
        : owner_(owner), elements_(elements), listeners_(listeners) {}
    ~Journal();
    Journal(Journal const&) = delete;
    Journal& operator=(Journal const&) = delete;

    // --- Savepoints. Transaction, Savepoint and ImplicitTransaction are made of these.

    /// Opens a savepoint and answers its serial. `system`: if it is the outermost one, no listener is told and nothing
    /// enters the history. `isOperation`: a Savepoint inside it opens nothing. ModelIsFrozen, ListenerMayNotWrite.
    std::uint64_t open(bool system, bool isOperation = false);
    bool inTransaction() const noexcept { return !savepoints_.empty(); }
    /// Whether the innermost savepoint is that of an operation.
    bool inOperation() const noexcept { return !savepoints_.empty() && savepoints_.back().isOperation; }
    bool isOpen(std::uint64_t serial) const noexcept;
    /// Commits the savepoint of that serial, or the innermost one for 0. Those inside it are rolled back first. If it
    /// throws (memory), the savepoint is still open.
    void commit(std::uint64_t serial);
    void rollBack(std::uint64_t serial) noexcept;

    // --- Recording.

    /// To be called before every change of an element but that of a single value. It is recorded if a transaction is
    /// open and the element is older than its innermost savepoint. Without a transaction nothing is recorded, and what
    /// was done before can't be undone after it. ListenerMayNotWrite, ModelIsFrozen.
    Admission admit(Element const& changed) {
        if (inTransaction()) return isBornHere(changed) ? Admission::Unrecorded : Admission::Recorded;
        if (history_ || listeners_.isLocked()) endHistory();
        return Admission::Unrecorded;
    }
    /// To be called before a single value of an element changes. Always a transaction of its own where none is open.
    Admission admit(Element const& changed, PropertyDescriptor const& value) const noexcept {
        if (isRecorded(changed, value)) return Admission::Unrecorded;
        if (inTransaction()) return Admission::Recorded;
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
    /// Like `isRecorded`, but answers false where the answer would take a call.
    bool isSurelyRecorded(Element const& e, PropertyDescriptor const& descriptor) const noexcept {
        if (e.track_.isBirth()) return e.track_.isBornSince(serial_);
        Storage const& s = e.track_.storage();
        return s.tracking().serial >= serial_ && s.hasFirst(descriptor);
    }
    bool isBornHere(Element const& e) const noexcept { return e.track_.isBornSince(serial_); }

    /// Room for the old value of a property that isn't recorded yet, to be filled at once without throwing.
    Cell& record(Element& element, PropertyDescriptor const& descriptor);
    /// Gives the history a transaction of one old value. The cell is to be filled like that of `record`.
    Cell& recordAlone(Element& element, PropertyDescriptor const& descriptor);
    /// Makes room for further steps, so that recording them can't fail.
    void reserveSteps(std::size_t more) { log_.reserveSteps(more); }
    /// Records a change that was admitted, in room that was reserved.
    void record(Step&& step) noexcept { log_.steps.push_back(std::move(step)); }
    /// The last step if the next change of the collection may be merged into it: recorded at the innermost savepoint,
    /// of that collection and kind; else null.
    template <class C>
    C* lastStep(AbstractOwnedCollection const& collection) noexcept {
        if (savepoints_.empty() || log_.steps.size() <= savepoints_.back().steps) return nullptr;
        C* const step = log_.steps.back().as<C>();
        return step != nullptr && step->collection == &collection ? step : nullptr;
    }
    /// The element becomes part of the model.
    void recordBirth(Element& element);
    /// The element dies; the log takes over the model's reference.
    void recordDeath(Element& element);
    /// Changes the child's container, and nothing else.
    void setContainer(Element& child, Element* container, std::uint16_t index);

    // --- Resolution of proxies, which is no change but must be taken back before older changes can be.

    /// Makes room for that many steps of a resolution.
    void reserveResolution(std::size_t steps);
    /// Records a step of the resolution under way, if `changed` needs one. In room that was reserved.
    void recordResolution(Step::Change&& change, Element const& changed) noexcept;
    /// Changes the child's container as part of a resolution.
    void resolveContainer(Element& child, Element* container, std::uint16_t index) noexcept;

    // --- History.

    /// Keeps the last `limit` transactions; 0 keeps none and forgets. ListenerMayNotWrite.
    void enableHistory(std::size_t limit);
    std::size_t undoDepth() const noexcept { return history_ ? history_->doneCount() : 0; }
    std::size_t redoDepth() const noexcept { return history_ ? history_->undoneCount() : 0; }
    /// Undoes or redoes a transaction. Answers whether there was one. TransactionIsOpen, ListenerMayNotWrite,
    /// ModelIsFrozen.
    bool replay(bool redo);
    void forgetHistory() noexcept { history_.reset(); }

    /// To be called when listeners came or went, or a lock changed.
    void refresh() noexcept;

private:
    struct OpenSavepoint {
        OpenSavepoint(std::uint64_t number, UndoLog const& log, bool isSystem, bool ofOperation) noexcept
            : serial(number),
              lives(log.lives.size()),
              steps(log.steps.size()),
              storages(log.storages),
              system(isSystem),
              isOperation(ofOperation) {}

        std::uint64_t serial;
        std::size_t lives;
        std::size_t steps;
        Storage* storages;  // where the list of the savepoint around it begins
        bool system;
        bool isOperation;
    };

    void close() noexcept;
    void rollBackTo(OpenSavepoint const& savepoint) noexcept;
    void commitInner();
    void dropStepsOfNewborn(std::size_t from, std::uint64_t serial) noexcept;
    void mergeAt(OpenSavepoint const& savepoint) noexcept;
    void commitOutermost();
    void commitUnheard(bool system) noexcept;
    void takeBackLeftovers() noexcept;
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
    JournalOwner& owner_;
    ElementDirectory& elements_;
    Listeners& listeners_;
};

}  // namespace quay::zero
