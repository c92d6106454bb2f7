// The record of a model's open transaction: what it takes to undo it, level by level.
//
// There are three kinds of record, because their order matters only within a kind. A Storage holds old values, which
// are absolute. `lives` lists births and deaths, whose reversal puts the model's list of elements back link by link.
// `steps` lists changes of collections and of containers, small operations that are reversed one by one.
#pragma once

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

/// The closed vocabulary of steps.
enum class StepKind : std::uint8_t {
    Contained,  ///< a child's container changed; the entry has the other one
    Inserted,   ///< members entered a collection
    Erased,     ///< members left; the entry has them
    Replaced,   ///< a member gave way to another; the entry has the other one
    Swapped,    ///< the whole content changed; the entry has the other one
    Touched,    ///< a change was announced; the content is as it was
    Resolved    ///< what a proxy stands for took its place in a slot; the entry has both
};

/// One step. What position, count and payload mean belongs to the collection that wrote the step; for `Contained`,
/// the payload is the container, the position its property's index, and the count 1 if the entry counts the child.
struct Step {
    Step(StepKind what, void* whose) noexcept : kind(what), subject(whose) {}

    StepKind kind;
    bool quiet = false;  // what a proxy stands for took its place: taken back in its turn, and no change
    void* subject;
    std::size_t position = 0;
    std::size_t count = 0;
    void* payload = nullptr;
};

/// Everything that one transaction did. Also what the history keeps.
class QUAY_ZERO_API UndoLog {
public:
    UndoLog() = default;
    UndoLog(UndoLog const&) = delete;
    UndoLog& operator=(UndoLog const&) = delete;
    UndoLog(UndoLog&& other) noexcept { swap(other); }
    UndoLog& operator=(UndoLog&& other) noexcept {
        swap(other);
        return *this;
    }
    ~UndoLog() { discard(); }

    void swap(UndoLog& other) noexcept {
        lives.swap(other.lives);
        steps.swap(other.steps);
        std::swap(storages, other.storages);
        std::swap(done, other.done);
    }
    bool empty() const noexcept { return lives.empty() && steps.empty() && storages == nullptr; }

    /// Lets go of everything, as after a commit without history. Elements that are dead in it may be freed.
    void discard() noexcept;
    /// Lets go of the steps and lives from these positions on.
    void discardFrom(std::size_t step, std::size_t life) noexcept;
    /// Makes room for that many more steps.
    void reserveSteps(std::size_t more) {
        if (steps.capacity() - steps.size() < more) {
            steps.reserve(std::max(steps.size() + more, 2 * steps.capacity()));
        }
    }
    /// The steps join the end of another log, which has room for them.
    void moveSteps(UndoLog& to) noexcept {
        for (Step const& step : steps) to.steps.push_back(step);
        steps.clear();
    }
    /// The element that a step changed: the owner of what it tells of, or the child that got another container.
    static ModelElement::Impl* changedBy(Step const& step) noexcept;
    /// Frees what a step holds.
    static void letGo(Step& step) noexcept;
    /// Nothing was done but to resolve proxies.
    bool onlyResolves() const noexcept;
    /// How many births and deaths there are.
    std::size_t lifeCount() const noexcept;

    std::vector<LifeEntry> lives;
    std::vector<Step> steps;
    Storage* storages = nullptr;  // linked, the latest first; once undone, the latest last
    bool done = true;             // what is recorded stands; false once it was undone and may be redone
};

}  // namespace quay::zero
