// The record of one transaction: what it takes to undo it, or to do it again.
//
// There are three kinds of record, because their order matters only within a kind. A Storage holds old values, which
// are absolute. `lives` lists births and deaths, whose reversal puts the model's list of elements back link by link.
// `steps` lists changes of collections and of containers, small operations that are reversed one by one.
#pragma once

#include <quay/zero/element_directory.h>
#include <quay/zero/step.h>
#include <quay/zero/storage.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace quay::zero {

/// One birth or death, or a run of births that stand side by side in the model's list.
struct LifeEntry {
    LifeEntry(bool isBirth, std::size_t number, ModelElement::Impl& e) noexcept
        : born(isBirth), count(number), first(&e), last(&e) {}

    bool born;          // else dead: the entry then holds the model's reference to each of its elements
    std::size_t count;  // 0: one that is in no list, such as a proxy, whose reference the entry keeps either way
    ModelElement::Impl* first;
    ModelElement::Impl* last;
};

/// Elements that a reversal brought back to life, and such that it made dead, in order.
struct LifeChanges {
    std::vector<ModelElement> revived;
    std::vector<ModelElement> buried;
};

/// Everything that one transaction did. Also what the history keeps. It must be discarded before its end.
class QUAY_ZERO_API UndoLog {
public:
    /// Takes what a log lets go of.
    class Disposal {
    public:
        virtual void giveBack(Storage& storage) noexcept = 0;
        /// An element is dead for good. Its reference is handed over as well.
        virtual void release(ModelElement::Impl& e) noexcept = 0;

    protected:
        ~Disposal() = default;
    };

    UndoLog() = default;
    UndoLog(UndoLog const&) = delete;
    UndoLog& operator=(UndoLog const&) = delete;
    UndoLog(UndoLog&& other) noexcept { swap(other); }
    UndoLog& operator=(UndoLog&& other) noexcept {
        swap(other);
        return *this;
    }
    ~UndoLog() = default;

    void swap(UndoLog& other) noexcept {
        lives.swap(other.lives);
        steps.swap(other.steps);
        std::swap(storages, other.storages);
        std::swap(done_, other.done_);
    }
    bool empty() const noexcept { return lives.empty() && steps.empty() && storages == nullptr; }
    /// Whether what is recorded stands; false once it was undone and may be redone.
    bool isDone() const noexcept { return done_; }

    /// Lets go of everything, as after a commit without history. Elements that are dead in it may be freed.
    void discard(Disposal& to) noexcept;
    /// Lets go of the steps and lives from these positions on.
    void discardFrom(std::size_t step, std::size_t life, Disposal& to) noexcept;
    /// Makes room for that many more steps.
    void reserveSteps(std::size_t more) {
        if (steps.capacity() - steps.size() < more) {
            steps.reserve(std::max(steps.size() + more, 2 * steps.capacity()));
        }
    }
    /// The steps join the end of another log, which has room for them.
    void moveSteps(UndoLog& to) noexcept {
        for (Step& step : steps) to.steps.push_back(std::move(step));
        steps.clear();
    }
    /// Reverses everything: what was done is undone, or done again. Births and deaths are told to `changes`, which
    /// must have room for `lifeCount` elements of either kind, unless it is null.
    void turn(ElementDirectory& elements, LifeChanges* changes) noexcept;
    /// Reverses the steps from a position on, the latest first if they are done.
    void exchangeSteps(std::size_t from) noexcept;
    /// Reverses the births and deaths from a position on.
    void exchangeLives(std::size_t from, ElementDirectory& elements, LifeChanges* changes) noexcept;

    /// Nothing was done but to resolve proxies.
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
