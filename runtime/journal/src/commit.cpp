// How savepoints and transactions are committed.
#include <quay/zero/change_set.h>
#include <quay/zero/handle.h>
#include <quay/zero/journal.h>

#include <algorithm>

namespace quay::zero {

// --- A savepoint joins the one around it ----------------------------------------------------------------------------

void Journal::commitInner() {
    OpenSavepoint const inner = savepoints_.back();
    std::uint64_t const outer = savepoints_[savepoints_.size() - 2].serial;

    // Only this savepoint's own storages are looked at. One whose element the outer savepoint has no need to restore
    // goes; one whose element the outer savepoint keeps values of hands over what is missing there; any other is simply
    // adopted.
    Storage** link = &log_.storages;
    while (*link != inner.storages) {
        Storage& s = **link;
        Track const before = s.tracking().outer;
        bool const keptOutside = !before.isBirth() && before.storage().tracking().serial >= outer;
        if (before.isBornSince(outer) || (keptOutside && before.storage().absorb(s))) {
            s.element().track_ = before;
            *link = s.tracking().next;
            pool_.giveBack(s);
        } else {
            s.tracking().serial = outer;
            link = &s.tracking().next;
        }
    }
    dropStepsOfNewborn(inner.steps, outer);
    close();
    mergeAt(inner);
}

/// Drops the steps from a position on that the savepoint of that serial wouldn't have recorded, since it gave birth to
/// what they changed. It records nothing of what it does to such elements itself; so a step that stayed would be
/// reversed on content that has changed since.
void Journal::dropStepsOfNewborn(std::size_t from, std::uint64_t serial) noexcept {
    auto const first = log_.steps.begin() + static_cast<std::ptrdiff_t>(from);
    auto const isOfNewborn = [&](Step const& step) { return step.changed().track_.isBornSince(serial); };
    log_.steps.erase(std::remove_if(first, log_.steps.end(), isOfNewborn), log_.steps.end());
}

/// Runs that continue what the outer savepoint did last become one with it.
void Journal::mergeAt(OpenSavepoint const& inner) noexcept {
    auto& lives = log_.lives;
    OpenSavepoint const& outer = savepoints_.back();
    if (lives.size() == inner.lives + 1 && inner.lives > outer.lives) {
        LifeEntry& before = lives[inner.lives - 1];
        LifeEntry const& after = lives[inner.lives];
        if (before.born && after.born && ElementList::previous(*after.first) == before.last) {
            before.last = after.last;
            before.count += after.count;
            lives.pop_back();
        }
    }
    auto& steps = log_.steps;
    if (steps.size() == inner.steps + 1 && inner.steps > outer.steps) {
        auto* const before = steps[inner.steps - 1].as<RunStep>();
        auto const* const after = steps[inner.steps].as<RunStep>();
        if (before != nullptr && after != nullptr && before->continuesWith(*after)) {
            before->count += after->count;
            steps.pop_back();
        }
    }
}

// --- A transaction becomes final ------------------------------------------------------------------------------------

void Journal::commitOutermost() {
    bool const system = savepoints_.front().system;
    if (system || (!history_ && !listeners_.any()) || log_.empty()) {
        if (history_ && log_.storages == nullptr && log_.onlyResolves()) {
            history_->resolved().reserveSteps(log_.steps.size());
            log_.moveSteps(history_->resolved());
        }
        commitUnheard(system);
        return;
    }
    std::uint64_t const bornSince = savepoints_.front().serial;

    // All that can fail comes before anything is final.
    std::unique_ptr<ChangeSet> changes;
    if (listeners_.any()) changes.reset(new ChangeSet(elements_, log_, bornSince));
    bool const nothingLeft =
        changes != nullptr ? changes->empty() : ChangeSet::isNothingLeft(elements_, log_, bornSince);
    bool const keep = history_ && !nothingLeft;
    if (keep) {
        for (Step& step : log_.steps) step.prepare();
        history_->reserve();
        history_->settle();
    }
    bool const onlyResolves = history_ && !keep && log_.onlyResolves();
    if (onlyResolves) history_->resolved().reserveSteps(log_.steps.size());

    for (Storage* s = log_.storages; s != nullptr; s = s->tracking().next) s->element().track_ = Track();
    close();
    if (changes != nullptr && !nothingLeft) {
        CountedHandle const alive(&owner_);  // a listener may drop the last handle of the model
        tell(*changes);
        changes.reset();
        finish(keep);
        return;
    }
    if (onlyResolves) {
        log_.moveSteps(history_->resolved());
    } else if (history_ && nothingLeft) {
        takeBackLeftovers();
    }
    changes.reset();
    finish(keep);
}

/// A transaction ends that changed nothing in the end. The history's logs know the entries of maps and sets by their
/// places in memory, and an entry that left and came again has another one: so the former ones come back. Containers
/// stay as they are: a container that changed while the collections didn't counts as no change.
void Journal::takeBackLeftovers() noexcept {
    for (auto step = log_.steps.rbegin(); step != log_.steps.rend(); ++step) {
        if (step->as<ContainerStep>() == nullptr) step->exchange();
    }
}

/// A commit that nobody hears of and nobody can take back. What was done before a system transaction can't be undone
/// after it, since that would take its work along.
void Journal::commitUnheard(bool system) noexcept {
    bool const nothingDone = log_.empty();
    while (log_.storages != nullptr) {
        Storage& s = *log_.storages;
        s.element().track_ = Track();
        log_.storages = s.tracking().next;
        pool_.giveBack(s);
    }
    close();
    if (system && history_ && !nothingDone) history_->clear();
    log_.discard(*this);
}

/// The log of a finished transaction goes into the history or away.
void Journal::finish(bool keep) noexcept {
    if (keep && history_) {
        history_->push(log_);
    } else {
        log_.discard(*this);
    }
}

void Journal::tell(ChangeSet const& changes) noexcept {
    listeners_.tell(changes, [this] { refresh(); });
}

}  // namespace quay::zero
