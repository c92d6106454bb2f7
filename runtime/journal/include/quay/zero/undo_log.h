// The record of one transaction: all that is needed to undo or redo it.
//
// There are three kinds of record, since order matters only within each kind. A Storage holds old values, which are
// absolute. `lives` lists births and deaths; reversing them restores the model's list of elements link by link. `steps`
// lists changes of collections and containers, small operations that are reversed one by one.
#pragma once

#include <quay/zero/element_directory.h>
#include <quay/zero/storage.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quay::zero {

class Step;

/// One birth or death, or several births of elements that are side by side in the model's list.
struct LifeEntry {
    LifeEntry(bool isBirth, std::size_t number, ModelElement::Impl& e) noexcept
        : born(isBirth), count(number), first(&e), last(&e) {}

    bool born;          // else dead: the entry then holds the model's reference to each of its elements
    std::size_t count;  // 0: an element in no list, such as a proxy; the entry always holds a reference to it
    ModelElement::Impl* first;
    ModelElement::Impl* last;
};

/// The elements that a reversal made alive again, and those that it made dead, in order.
struct LifeChanges {
    std::vector<ModelElement> revived;
    std::vector<ModelElement> died;
};

/// Everything that one transaction did; the history keeps these. A log must be discarded before it is destroyed.
class QUAY_ZERO_API UndoLog {
public:
    /// Receives what a log discards.
    class Disposal {
    public:
        virtual void giveBack(Storage& storage) noexcept = 0;
        /// The element is dead and nothing can bring it back. Its reference is handed over as well.
        virtual void release(ModelElement::Impl& e) noexcept = 0;

    protected:
        ~Disposal() = default;
    };

    UndoLog() noexcept;
    UndoLog(UndoLog const&) = delete;
    UndoLog& operator=(UndoLog const&) = delete;
    UndoLog(UndoLog&& other) noexcept;
    UndoLog& operator=(UndoLog&& other) noexcept;
    ~UndoLog();

    void swap(UndoLog& other) noexcept;
    bool empty() const noexcept;
    /// Whether the recorded changes are in effect; false once they were undone.
    bool isDone() const noexcept { return done_; }

    /// Discards everything, as after a commit without history. Elements that are dead in the log may be freed.
    void discard(Disposal& to) noexcept;
    /// Discards the steps, and the births and deaths, from these positions on.
    void discardFrom(std::size_t step, std::size_t life, Disposal& to) noexcept;
    /// Reserves memory for that many more steps.
    void reserveSteps(std::size_t more);
    /// Moves the steps to the end of another log, which must have memory reserved for them.
    void moveSteps(UndoLog& to) noexcept;
    /// Reverses everything: undoes what was done, or redoes it. Adds the elements that become alive or dead to
    /// `changes`, unless it is null; memory for `lifeCount` elements of either kind must be reserved there.
    void reverse(ElementDirectory& elements, LifeChanges* changes) noexcept;
    /// Reverses the steps from a position on, the latest first if they are done.
    void exchangeSteps(std::size_t from) noexcept;
    /// Reverses the births and deaths from a position on.
    void exchangeLives(std::size_t from, ElementDirectory& elements, LifeChanges* changes) noexcept;

    /// Whether nothing was done except resolving proxies.
    bool onlyResolves() const noexcept;
    /// How many births and deaths there are.
    std::size_t lifeCount() const noexcept;

    std::vector<LifeEntry> lives;
    std::vector<Step> steps;
    Storage* storages = nullptr;  // linked, the latest first; once undone, the latest last

private:
    bool done_ = true;
};

}  // namespace quay::zero
