// How changes are recorded and rolled back. commit.cpp and replay.cpp have the rest of the journal.
#include <quay/zero/history.h>
#include <quay/zero/journal.h>
#include <quay/zero/step.h>

#include <algorithm>

namespace quay::zero {

Journal::Journal(JournalOwner& owner, ElementDirectory& elements, Listeners& listeners) noexcept
    : owner_(owner), elements_(elements), listeners_(listeners) {}

Journal::~Journal() {
    history_.reset();
    log_.discard(*this);
}

Journal::OpenSavepoint::OpenSavepoint(std::uint64_t number, UndoLog const& log, bool isSystem,
                                      bool ofOperation) noexcept
    : serial(number),
      lives(log.lives.size()),
      steps(log.steps.size()),
      storages(log.storages),
      system(isSystem),
      isOperation(ofOperation) {}

// --- Savepoints -----------------------------------------------------------------------------------------------------

std::uint64_t Journal::open(bool system, bool isOperation) {
    requireUnlocked();
    savepoints_.emplace_back(lastSerial_ + 1, log_, system, isOperation);
    serial_ = ++lastSerial_;
    return serial_;
}

bool Journal::isOpen(std::uint64_t serial) const noexcept {
    auto const found = std::lower_bound(savepoints_.begin(), savepoints_.end(), serial,
                                        [](OpenSavepoint const& s, std::uint64_t n) { return s.serial < n; });
    return found != savepoints_.end() && found->serial == serial;
}

void Journal::commit(std::uint64_t serial) {
    while (serial != 0 && savepoints_.back().serial != serial) {
        rollBackTo(savepoints_.back());
        close();
    }
    savepoints_.size() == 1 ? commitOutermost() : commitInner();
}

void Journal::rollBack(std::uint64_t serial) noexcept {
    if (serial != 0 && !isOpen(serial)) return;
    bool last = false;
    while (!last) {
        last = serial == 0 || savepoints_.back().serial == serial;
        rollBackTo(savepoints_.back());
        close();
    }
}

void Journal::close() noexcept {
    savepoints_.pop_back();
    if (savepoints_.empty()) mayDiffer_ = false;
    refresh();
}

void Journal::refresh() noexcept {
    constexpr std::uint64_t kAboveAll = UINT64_MAX >> 1;
    if (listeners_.isLocked()) {
        serial_ = kAboveAll;
    } else if (!savepoints_.empty()) {
        serial_ = savepoints_.back().serial;
    } else {
        serial_ = listeners_.any() || history_ ? kAboveAll : 0;
    }
}

/// Undoes everything since the savepoint was opened, and discards its part of the log.
void Journal::rollBackTo(OpenSavepoint const& savepoint) noexcept {
    while (log_.storages != savepoint.storages) {
        Storage& s = *log_.storages;
        s.exchange();
        s.element().track_ = s.tracking().outer;
        log_.storages = s.tracking().next;
        pool_.giveBack(s);
    }
    log_.exchangeSteps(savepoint.steps);
    log_.exchangeLives(savepoint.lives, elements_, nullptr);
    log_.discardFrom(savepoint.steps, savepoint.lives, *this);
}

// --- Recording ------------------------------------------------------------------------------------------------------

Cell& Journal::record(Element& element, PropertyDescriptor const& descriptor) {
    Track const track = element.track_;
    if (!track.isBirth() && track.storage().tracking().serial >= serial_) return track.storage().add(descriptor);
    Storage& s = pool_.take(element);
    s.tracking() = {log_.storages, serial_, track};
    log_.storages = &s;
    element.track_ = Track(s);
    return s.add(descriptor);
}

Cell& Journal::recordAlone(Element& element, PropertyDescriptor const& descriptor) {
    history_->reserve();
    history_->settle();
    Storage& s = pool_.take(element);
    s.tracking().next = nullptr;
    history_->push(s);
    return s.add(descriptor);
}

Step* Journal::lastStep() noexcept {
    if (savepoints_.empty() || log_.steps.size() <= savepoints_.back().steps) return nullptr;
    return &log_.steps.back();
}

void Journal::recordBirth(Element& element) {
    if (inTransaction()) {
        bool const joins = log_.lives.size() > savepoints_.back().lives && log_.lives.back().born &&
                           log_.lives.back().last == elements_.list().last();
        if (joins) {
            log_.lives.back().last = &element;
            ++log_.lives.back().count;
        } else {
            log_.lives.emplace_back(true, 1, element);
        }
        element.track_ = Track(serial_);
    }
    elements_.enter(element);
}

void Journal::recordDeath(Element& element) {
    // The directory holds no reference to a proxy, which was never entered. So the log adds one, and marks the entry by
    // a count of 0.
    bool const entered = ElementDirectory::wasEntered(element);
    log_.lives.emplace_back(false, entered ? 1 : 0, element);
    if (!entered) element.addRef();
    elements_.takeOut(element, element, entered ? 1 : 0);
}

void Journal::setContainer(Element& child, Element* container, std::uint16_t index) {
    if (child.container_ == container && (container == nullptr || child.containmentIndex_ == index)) return;
    if (admit(child) == Admission::Recorded) {
        reserveSteps(1);
        bool const entered = ElementDirectory::wasEntered(child);
        record(ContainerStep{&child, child.container_, child.containmentIndex_,
                             entered ? ModelElement() : ModelElement(&child)});
    }
    child.container_ = container;
    child.containmentIndex_ = index;
    if (container != nullptr) container->noteOwned();
}

/// Clears the history before a change that isn't recorded, since older changes couldn't be undone after it.
void Journal::endHistory() {
    if (!owner_.isAlive()) return;
    listeners_.requireUnlocked();
    if (history_) history_->clear();
}

// --- Resolution -----------------------------------------------------------------------------------------------------

/// The log in which a resolution is recorded: that of the open transaction, else the one beside the history, else null.
UndoLog* Journal::resolutionLog() noexcept {
    if (inTransaction()) return &log_;
    return history_ ? &history_->resolved() : nullptr;
}

void Journal::reserveResolution(std::size_t steps) {
    if (UndoLog* const log = resolutionLog()) log->reserveSteps(steps);
}

void Journal::resolveContainer(Element& child, Element* container, std::uint16_t index) noexcept {
    bool const entered = ElementDirectory::wasEntered(child);
    recordResolution(ContainerStep{&child, child.container_, child.containmentIndex_,
                                   entered ? ModelElement() : ModelElement(&child)},
                     child);
    child.container_ = container;
    child.containmentIndex_ = index;
}

}  // namespace quay::zero
