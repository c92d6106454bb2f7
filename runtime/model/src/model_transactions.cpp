// How a model's transactions begin, nest, end and are replayed.
#include <quay/zero/change_set.h>
#include <quay/zero/collection.h>
#include <quay/zero/model.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

#include <quay/zero/history.h>
#include <quay/zero/slot_resolution.h>

#include <algorithm>

namespace quay::zero {

// --- Levels ---------------------------------------------------------------------------------------------------------

Transaction ModelImpl::beginTransaction(bool system) { return {*this, openLevel(system)}; }

std::uint64_t ModelImpl::openLevel(bool system, bool isOperation) {
    requireUnlocked();
    levels_.emplace_back(lastSerial_ + 1, log_, system, isOperation);
    levelSerial_ = ++lastSerial_;
    return levelSerial_;
}

void ModelImpl::requireUnlocked() const {
    if (telling_) reportException(quay0::messages::ListenerMayNotWrite());
    if (frozen_) reportException(quay0::messages::ModelIsFrozen());
}

bool ModelImpl::isOpen(std::uint64_t serial) const noexcept {
    return std::any_of(levels_.begin(), levels_.end(), [&](Level const& l) { return l.serial == serial; });
}

void ModelImpl::commitLevel(std::uint64_t serial) {
    while (serial != 0 && levels_.back().serial != serial) {
        unwindTo(levels_.back());
        endLevel();
    }
    levels_.size() == 1 ? commitOutermost() : commitInner();
}

void ModelImpl::rollbackLevel(std::uint64_t serial) noexcept {
    if (serial != 0 && !isOpen(serial)) return;
    bool last = false;
    while (!last) {
        last = serial == 0 || levels_.back().serial == serial;
        unwindTo(levels_.back());
        endLevel();
    }
}

void ModelImpl::endLevel() noexcept {
    levels_.pop_back();
    if (levels_.empty()) {
        refreshQuiet();
    } else {
        levelSerial_ = levels_.back().serial;
    }
}

// --- Recording ------------------------------------------------------------------------------------------------------

/// A storage for the element from the pool.
inline Storage& ModelImpl::takeStorage(ModelElement::Impl& element) {
    if (freeStorages_ == nullptr) makeStorage();
    Storage& s = *freeStorages_;
    freeStorages_ = s.next_;
    s.element_ = &element;
    return s;
}

void ModelImpl::makeStorage() { freeStorages_ = new Storage; }

Cell& ModelImpl::record(ModelElement::Impl& element, PropertyDescriptor const& descriptor) {
    Track const track = element.track_;
    if (!track.isBirth() && track.storage().serial_ >= levelSerial_) return track.storage().add(descriptor);
    Storage& s = takeStorage(element);
    s.serial_ = levelSerial_;
    s.outerTrack_ = track;
    s.next_ = log_.storages;
    log_.storages = &s;
    element.track_ = Track(s);
    return s.add(descriptor);
}

Cell& ModelImpl::recordAlone(ModelElement::Impl& element, PropertyDescriptor const& descriptor) {
    history_->reserve();
    history_->settle();
    Storage& s = takeStorage(element);
    s.next_ = nullptr;
    history_->push(s);
    return s.add(descriptor);
}

void ModelImpl::giveBack(Storage* s) noexcept {
    s->clear();
    s->next_ = freeStorages_;
    freeStorages_ = s;
}

Step& ModelImpl::recordStep(StepKind kind, void* subject) { return log_.steps.emplace_back(kind, subject); }

void ModelImpl::setContainer(ModelElement::Impl& child, ModelElement::Impl* container, std::uint16_t index) {
    if (child.container_ == container && (container == nullptr || child.containmentIndex_ == index)) return;
    if (!inTransaction()) noteUnrecorded();
    if (inTransaction() && !isBornHere(child)) {
        Step& step = recordStep(StepKind::Contained, &child);
        step.payload = child.container_;
        step.position = child.containmentIndex_;
        holdUnlisted(step, child);
    }
    child.container_ = container;
    child.containmentIndex_ = index;
    if (container != nullptr) container->noteOwned();
}

/// What no list of the model holds, such as a proxy, must live as long as the step that knows it.
void ModelImpl::holdUnlisted(Step& step, ModelElement::Impl& child) noexcept {
    if ((child.flags_ & kListed) != 0) return;
    child.addRef();
    step.count = 1;
}

Step* ModelImpl::lastStep(StepKind kind, void const* subject) noexcept {
    if (levels_.empty() || log_.steps.size() <= levels_.back().steps) return nullptr;
    Step& step = log_.steps.back();
    return step.kind == kind && step.subject == subject ? &step : nullptr;
}

// --- Commit ---------------------------------------------------------------------------------------------------------

/// The innermost level's work joins the level around it.
void ModelImpl::commitInner() {
    Level const level = levels_.back();
    std::uint64_t const parent = levels_[levels_.size() - 2].serial;

    // Only this level's own storages are looked at. One whose element the outer level has no need to restore goes; one
    // whose element the outer level keeps values of hands over what is missing there; any other is simply adopted.
    Storage** link = &log_.storages;
    while (*link != level.storages) {
        Storage* const s = *link;
        Track const outer = s->outerTrack_;
        bool const keptOutside = !outer.isBirth() && outer.storage().serial_ >= parent;
        if (outer.isBornSince(parent) || (keptOutside && outer.storage().absorb(*s))) {
            s->element_->track_ = outer;
            *link = s->next_;
            giveBack(s);
        } else {
            s->serial_ = parent;
            link = &s->next_;
        }
    }
    dropStepsOfNewborn(level.steps, parent);
    endLevel();
    mergeAt(level);
}

/// Lets go of the steps from a mark on that the level of that serial wouldn't have recorded: what was born in it needs
/// no restoring. It records none of what it does to them itself, so a step that stayed would be reversed on content
/// that has changed since.
void ModelImpl::dropStepsOfNewborn(std::size_t from, std::uint64_t serial) noexcept {
    auto kept = log_.steps.begin() + static_cast<std::ptrdiff_t>(from);
    for (auto step = kept; step != log_.steps.end(); ++step) {
        if (isBornSince(*UndoLog::changedBy(*step), serial)) {
            UndoLog::letGo(*step);
        } else {
            *kept++ = *step;
        }
    }
    log_.steps.erase(kept, log_.steps.end());
}

/// Runs that continue what the outer level did last become one with it.
void ModelImpl::mergeAt(Level const& level) noexcept {
    auto& lives = log_.lives;
    Level const& outer = levels_.back();
    if (lives.size() == level.lives + 1 && level.lives > outer.lives) {
        LifeEntry& before = lives[level.lives - 1];
        LifeEntry const& after = lives[level.lives];
        if (before.born && after.born && after.first->previous_ == before.last) {
            before.last = after.last;
            before.count += after.count;
            lives.pop_back();
        }
    }
    auto& steps = log_.steps;
    if (steps.size() == level.steps + 1 && level.steps > outer.steps) {
        Step& before = steps[level.steps - 1];
        Step const& after = steps[level.steps];
        bool const run = before.kind == StepKind::Inserted && after.kind == StepKind::Inserted &&
                         before.subject == after.subject && before.payload == nullptr && after.payload == nullptr &&
                         before.position + before.count == after.position;
        if (run) {
            before.count += after.count;
            steps.pop_back();
        }
    }
}

void ModelImpl::commitOutermost() {
    bool const system = levels_.front().system;
    if (system || (!history_ && !listeners_) || log_.empty()) {
        if (history_ && log_.storages == nullptr && log_.onlyResolves()) {
            history_->resolved().reserveSteps(log_.steps.size());
            log_.moveSteps(history_->resolved());
        }
        commitUnheard(system);
        return;
    }
    std::uint64_t const bornSince = levels_.front().serial;

    // All that can fail comes before anything is final.
    std::unique_ptr<ChangeSet> changes;
    if (listeners_) changes.reset(new ChangeSet(*this, log_, bornSince));
    bool const nothingLeft = changes != nullptr ? changes->empty() : ChangeSet::isNothingLeft(*this, log_, bornSince);
    bool const keep = history_ && !nothingLeft;
    if (keep) {
        for (Step& step : log_.steps) prepareStep(step);
        history_->reserve();
        history_->settle();
    }
    bool const onlyResolves = history_ && !keep && log_.onlyResolves();
    if (onlyResolves) history_->resolved().reserveSteps(log_.steps.size());

    for (Storage* s = log_.storages; s != nullptr; s = s->next_) s->element_->track_ = Track();
    endLevel();
    if (changes != nullptr && !nothingLeft) {
        Model const alive(this);  // a listener may drop the last handle
        tell(*changes);
        changes.reset();
        finish(keep);
        return;
    }
    // Nothing is left. The history's logs know entries of maps and sets by their places in memory, and an entry that
    // left and came again has another one: so the former ones come back. A container of its own accord is no change.
    if (onlyResolves) {
        log_.moveSteps(history_->resolved());
    } else if (history_ && nothingLeft) {
        for (auto step = log_.steps.rbegin(); step != log_.steps.rend(); ++step) {
            if (step->kind != StepKind::Contained) exchangeStep(*step);
        }
    }
    changes.reset();
    finish(keep);
}

/// A commit that nobody hears of and nobody can take back. What was done before a system transaction can't be undone
/// after it, since that would take its work along.
void ModelImpl::commitUnheard(bool system) noexcept {
    bool const nothingDone = log_.empty();
    while (Storage* const s = log_.storages) {
        s->element_->track_ = Track();
        log_.storages = s->next_;
        giveBack(s);
    }
    endLevel();
    if (system && history_ && !nothingDone) history_->clear();
    log_.discard();
}

/// The log of a finished transaction goes into the history or away.
void ModelImpl::finish(bool keep) noexcept {
    if (keep && history_) {
        history_->push(log_);
    } else {
        log_.discard();
    }
}

// --- Rollback, undo and redo ----------------------------------------------------------------------------------------

/// Undoes everything since the level began, and lets go of it.
void ModelImpl::unwindTo(Level const& level) noexcept {
    while (log_.storages != level.storages) {
        Storage* const s = log_.storages;
        s->exchange();
        s->element_->track_ = s->outerTrack_;
        log_.storages = s->next_;
        giveBack(s);
    }
    exchangeSteps(log_, level.steps);
    exchangeLives(log_, level.lives, nullptr, nullptr);
    log_.discardFrom(level.steps, level.lives);
}

/// Reverses the steps from a mark on, each into its opposite.
void ModelImpl::exchangeSteps(UndoLog& log, std::size_t from) noexcept {
    if (log.done) {
        for (std::size_t i = log.steps.size(); i-- > from;) exchangeStep(log.steps[i]);
    } else {
        for (Step& step : log.steps) exchangeStep(step);
    }
}

void ModelImpl::exchangeStep(Step& step) noexcept {
    if (step.kind == StepKind::Contained) {
        auto& child = *static_cast<ModelElement::Impl*>(step.subject);
        auto* const other = static_cast<ModelElement::Impl*>(step.payload);
        auto const index = static_cast<std::uint16_t>(step.position);
        step.payload = child.container_;
        step.position = child.containmentIndex_;
        child.container_ = other;
        child.containmentIndex_ = index;
    } else if (step.kind == StepKind::Resolved) {
        static_cast<SlotResolution*>(step.payload)->exchange(*static_cast<ModelElement::Impl*>(step.subject));
    } else if (step.kind != StepKind::Touched) {
        static_cast<AbstractOwnedCollection*>(step.subject)->exchange(step);
    }
}

void ModelImpl::prepareStep(Step& step) {
    if (step.kind == StepKind::Inserted) static_cast<AbstractOwnedCollection*>(step.subject)->prepare(step);
}

void ModelImpl::exchangeLives(UndoLog& log, std::size_t from, std::vector<ModelElement>* revived,
                              std::vector<ModelElement>* buried) noexcept {
    auto const exchange = [&](LifeEntry& entry) {
        if (entry.born) {
            for (auto* e = entry.last;; e = e->previous_) {
                ids_.forget(*e);
                classes_.leaving(*e);
                e->setFlag(kAlive, false);
                if (buried != nullptr) buried->emplace_back(e);
                if (e == entry.first) break;
            }
            if (entry.count > 0) elements_.takeOut(*entry.first, *entry.last, entry.count);
        } else {
            for (auto* e = entry.first;; e = e->next_) {
                if ((e->flags_ & kListed) != 0) ids_.returned(*e);
                e->setFlag(kAlive, true);
                if (revived != nullptr) revived->emplace_back(e);
                if (e == entry.last) break;
            }
            for (auto* e = entry.last;; e = e->previous_) {  // from the back, so that each knows what is after it
                classes_.returned(*e);
                if (e == entry.first) break;
            }
            if (entry.count > 0) elements_.putBack(*entry.first, *entry.last, entry.count);
        }
        entry.born = !entry.born;
    };
    if (log.done) {
        for (std::size_t i = log.lives.size(); i-- > from;) exchange(log.lives[i]);
    } else {
        std::for_each(log.lives.begin(), log.lives.end(), exchange);
    }
}

bool ModelImpl::replay(bool redo) {
    if (inTransaction()) reportException(quay0::messages::TransactionIsOpen());
    if (telling_) reportException(quay0::messages::ListenerMayNotWrite());
    if (frozen_) reportException(quay0::messages::ModelIsFrozen());
    UndoLog* const log = history_ ? history_->next(redo) : nullptr;
    if (log == nullptr) return false;
    exchangeSteps(history_->resolved(), 0);
    history_->resolved().discard();

    std::vector<ModelElement> revived;
    std::vector<ModelElement> buried;
    if (listeners_) {
        std::size_t const most = log->lifeCount();
        revived.reserve(most);
        buried.reserve(most);
    }
    auto const turn = [&](std::vector<ModelElement>* in, std::vector<ModelElement>* out) noexcept {
        // Where an element has two storages, their order matters, so the list turns round as well.
        Storage* turned = nullptr;
        while (Storage* const s = log->storages) {
            s->exchange();
            log->storages = std::exchange(s->next_, turned);
            turned = s;
        }
        log->storages = turned;
        exchangeSteps(*log, 0);
        exchangeLives(*log, 0, in, out);
        log->done = !log->done;
    };
    turn(listeners_ ? &revived : nullptr, listeners_ ? &buried : nullptr);

    Model const alive(this);  // a listener may drop the last handle
    std::unique_ptr<ChangeSet> changes;
    if (listeners_) {
        try {
            changes.reset(new ChangeSet(*this, *log, std::move(revived), std::move(buried)));
        } catch (...) {
            turn(nullptr, nullptr);
            throw;
        }
    }
    history_->step(redo);
    if (changes != nullptr && !changes->empty()) tell(*changes);
    return true;
}

}  // namespace quay::zero
