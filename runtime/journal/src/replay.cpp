// How transactions of the history are undone and redone.
#include <quay/zero/change_set.h>
#include <quay/zero/handle.h>
#include <quay/zero/history.h>
#include <quay/zero/journal.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

namespace quay::zero {

void Journal::enableHistory(std::size_t limit) {
    listeners_.requireNotTelling();  // a change set that is being told may refer to a log of the history
    Disposal& disposal = *this;
    auto history = limit == 0 ? nullptr : std::make_unique<History>(limit, disposal);
    if (history && history_) history->takeOver(*history_);
    history_ = std::move(history);
    refresh();
}

void Journal::forgetHistory() noexcept { history_.reset(); }

std::size_t Journal::undoDepth() const noexcept { return history_ ? history_->doneCount() : 0; }
std::size_t Journal::redoDepth() const noexcept { return history_ ? history_->undoneCount() : 0; }

bool Journal::replay(bool redo) {
    if (inTransaction()) reportException(quay0::messages::TransactionIsOpen());
    listeners_.requireUnlocked();
    UndoLog* const log = history_ ? history_->next(redo) : nullptr;
    if (log == nullptr) return false;
    history_->resolved().exchangeSteps(0);
    history_->resolved().discard(*this);

    LifeChanges lives;
    if (listeners_.any()) {
        std::size_t const most = log->lifeCount();
        lives.revived.reserve(most);
        lives.died.reserve(most);
    }
    log->reverse(elements_, listeners_.any() ? &lives : nullptr);

    CountedHandle const alive(&owner_);  // a listener may release the last handle of the model
    std::unique_ptr<ChangeSet> changes;
    if (listeners_.any()) {
        try {
            changes.reset(new ChangeSet(*log, std::move(lives)));
        } catch (...) {
            log->reverse(elements_, nullptr);
            throw;
        }
    }
    history_->step(redo);
    if (changes != nullptr && !changes->empty()) tell(*changes);
    return true;
}

}  // namespace quay::zero
