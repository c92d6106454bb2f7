// How savepoints and transactions are committed.
#include <quay/zero/change_set.h>
#include <quay/zero/handle.h>
#include <quay/zero/history.h>
#include <quay/zero/journal.h>
#include <quay/zero/step.h>

#include <algorithm>

namespace quay::zero {

// --- Committing an inner savepoint -----------------------------------------------------------------------------------

void Journal::commitInner() {
    OpenSavepoint const inner = savepoints_.back();
    OpenSavepoint const& around = savepoints_[savepoints_.size() - 2];
    std::uint64_t const outer = around.serial;

    // What the inner savepoint recorded stays as it is if the outer one recorded nothing before it was opened.
    bool const bearsAny = inner.lives != around.lives;
    if (bearsAny || inner.storages != around.storages) joinStorages(inner, outer);
    if (bearsAny) eraseStepsOfNewborn(inner.steps, outer);
    close();
    mergeAt(inner);
}

/// Makes the storages of an inner savepoint part of the savepoint around it, whose serial is `outer`.
void Journal::joinStorages(OpenSavepoint const& inner, std::uint64_t outer) noexcept {
    // Only the storages of the inner savepoint are visited. If the outer savepoint gave birth to the element, the
    // storage isn't needed. If the outer savepoint has a storage of the element, that storage takes over the values
    // that it lacks. Otherwise the storage becomes one of the outer savepoint; so does one that couldn't be taken over
    // for lack of memory, and the older ones on which it stands.
    Storage** link = &log_.storages;
    while (*link != inner.storages) {
        Storage& s = **link;
        Track const before = s.tracking().outer;
        bool const keptOutside = !before.isBirth() && before.storage().tracking().serial >= outer;
        Track const& latest = s.element().track_;
        bool const isLatest = !latest.isBirth() && &latest.storage() == &s;
        if (isLatest && (before.isBornSince(outer) || (keptOutside && before.storage().absorb(s)))) {
            s.element().track_ = before;
            *link = s.tracking().next;
            pool_.giveBack(s);
        } else {
            s.tracking().serial = outer;
            link = &s.tracking().next;
        }
    }
}

/// Erases, from a position on, the steps of elements that were born at the savepoint of that serial or later. That
/// savepoint doesn't record its own changes of such elements, so these steps would be reversed on content that has
/// changed since.
void Journal::eraseStepsOfNewborn(std::size_t from, std::uint64_t serial) noexcept {
    auto const first = log_.steps.begin() + static_cast<std::ptrdiff_t>(from);
    auto const isOfNewborn = [&](Step const& step) { return step.changed().track_.isBornSince(serial); };
    log_.steps.erase(std::remove_if(first, log_.steps.end(), isOfNewborn), log_.steps.end());
}

/// Merges a run of births or insertions into that of the outer savepoint which it continues.
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

// --- Committing a transaction ----------------------------------------------------------------------------------------

void Journal::commitOutermost() {
    bool const system = savepoints_.front().system;
    std::uint64_t const bornSince = savepoints_.front().serial;
    if (system && history_ && log_.storages == nullptr && log_.onlyResolves()) {
        history_->resolved().reserveSteps(log_.steps.size());
        log_.moveSteps(history_->resolved());
    }
    bool const tells = listeners_.any() && !system;
    bool const isSystemChange = system && history_ && !ChangeSet::isNothingLeft(elements_, log_, bornSince);
    if (log_.empty() || isSystemChange || (!history_ && !tells)) {
        commitUnrecorded(system);
        return;
    }

    // All that can fail is done before anything becomes final.
    if (mayDiffer_) restoreEqualValues();
    std::unique_ptr<ChangeSet> changes;
    if (tells) changes.reset(new ChangeSet(elements_, log_, bornSince));
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
        CountedHandle const alive(&owner_);  // a listener may release the last handle of the model
        tell(*changes);
        changes.reset();
        finish(keep);
        return;
    }
    if (onlyResolves) {
        log_.moveSteps(history_->resolved());
    } else if (history_ && nothingLeft) {
        reverseSteps();
    }
    changes.reset();
    finish(keep);
}

/// Gives back their old bits to values that equal the old ones.
void Journal::restoreEqualValues() {
    for (Storage* s = log_.storages; s != nullptr; s = s->tracking().next) {
        ModelElement::Impl& e = s->element();
        if (!e.isAlive()) continue;
        s->forEach([&](PropertyDescriptor const& descriptor, Cell& old) {
            bool const isValue = descriptor.kind() == PropertyKind::Value;
            if (isValue && descriptor.unchanged(e, old)) descriptor.restore(e, old);
        });
    }
}

/// For a transaction that changed nothing in the end. Logs of the history refer to the entries of maps and sets by
/// address, and an entry that was removed and added again has another address; reversing the steps restores the former
/// entries. Containers stay as they are: a container that changed while the collections didn't counts as no change.
void Journal::reverseSteps() noexcept {
    for (auto step = log_.steps.rbegin(); step != log_.steps.rend(); ++step) {
        if (step->as<ContainerStep>() == nullptr) step->exchange();
    }
}

/// Commits without telling listeners and without keeping the log. A system transaction clears the history, since
/// undoing older changes would have to undo its work as well.
void Journal::commitUnrecorded(bool system) noexcept {
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

/// Puts the log of a committed transaction into the history, or discards it.
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
