// The history: the committed transactions that can be undone or redone.
#pragma once

#include <quay/zero/step.h>
#include <quay/zero/undo_log.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace quay::zero {

/// A ring of logs, oldest first: those that are done, then those that were undone and can be redone. When the ring is
/// full, the oldest log is discarded and its memory is used for the next one.
class History {
public:
    History(std::size_t limit, UndoLog::Disposal& disposal) noexcept : limit_(limit), disposal_(disposal) {}
    ~History() { clear(); }
    History(History const&) = delete;
    History& operator=(History const&) = delete;

    std::size_t doneCount() const noexcept { return done_; }
    std::size_t undoneCount() const noexcept { return undone_; }

    /// Reserves memory for one more log, so that `push` can't fail.
    void reserve() {
        if (slots_.size() < limit_ && done_ == slots_.size()) slots_.emplace_back();
    }
    /// Takes over the log and leaves an empty one in its place. Logs that could be redone are discarded, and the oldest
    /// one if the ring is full.
    void push(UndoLog& log) noexcept {
        makeRoom();
        at(done_).swap(log);
        ++done_;
    }
    /// Keeps a log of one storage.
    void push(Storage& s) noexcept {
        makeRoom();
        at(done_).storages = &s;
        ++done_;
    }

    /// The resolutions of proxies since the last log. They are reversed before anything is undone or redone, and later
    /// reads resolve the proxies again.
    UndoLog& resolved() noexcept { return resolved_; }
    /// To be called before a log is pushed: the resolutions since the last log become part of that last log, with which
    /// they are undone and redone.
    void settle() {
        if (resolved_.steps.empty()) return;
        if (done_ == 0) return resolved_.discard(disposal_);
        at(done_ - 1).reserveSteps(resolved_.steps.size());
        resolved_.moveSteps(at(done_ - 1));
    }

    /// Takes over the latest done logs of another history, as many as fit.
    void takeOver(History& other) {
        for (std::size_t i = other.done_ - std::min(other.done_, limit_); i < other.done_; ++i) {
            reserve();
            push(other.at(i));
        }
        resolved_.swap(other.resolved_);
    }

    /// The next log to undo or redo; null if there is none. After replaying it, `step` must be called.
    UndoLog* next(bool redo) noexcept {
        if (redo) return undone_ == 0 ? nullptr : &at(done_);
        return done_ == 0 ? nullptr : &at(done_ - 1);
    }
    void step(bool redo) noexcept {
        if (redo) {
            ++done_;
            --undone_;
        } else {
            --done_;
            ++undone_;
        }
    }

    /// Discards all logs. Elements destroyed by a log are used by earlier logs, and elements born in a log by later
    /// ones; so done logs are discarded oldest first, undone ones latest first.
    void clear() noexcept {
        resolved_.discard(disposal_);
        dropUndone();
        for (std::size_t i = 0; i < done_; ++i) at(i).discard(disposal_);
        done_ = 0;
    }
    void dropUndone() noexcept {
        while (undone_ > 0) at(done_ + --undone_).discard(disposal_);
    }

private:
    void makeRoom() noexcept {
        dropUndone();
        if (done_ < slots_.size()) return;
        at(0).discard(disposal_);
        first_ = wrap(first_ + 1);
        --done_;
    }
    UndoLog& at(std::size_t i) noexcept { return slots_[wrap(first_ + i)]; }
    std::size_t wrap(std::size_t i) const noexcept { return i < slots_.size() ? i : i - slots_.size(); }

    std::size_t limit_;
    UndoLog::Disposal& disposal_;
    std::vector<UndoLog> slots_;
    UndoLog resolved_;       // steps alone
    std::size_t first_ = 0;  // 0 until the ring is full
    std::size_t done_ = 0;
    std::size_t undone_ = 0;
};

}  // namespace quay::zero
