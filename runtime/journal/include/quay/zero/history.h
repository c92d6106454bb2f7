// The committed transactions that a model can take back.
#pragma once

#include <quay/zero/undo_log.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace quay::zero {

/// A ring of logs, oldest first: those that are done, then those that were undone and can be redone. A log that falls
/// out hands its memory to the next one that comes in.
class History {
public:
    History(std::size_t limit, UndoLog::Disposal& disposal) noexcept : limit_(limit), disposal_(disposal) {}
    ~History() { clear(); }
    History(History const&) = delete;
    History& operator=(History const&) = delete;

    std::size_t doneCount() const noexcept { return done_; }
    std::size_t undoneCount() const noexcept { return undone_; }

    /// Makes room for one more log, so that `push` can't fail.
    void reserve() {
        if (slots_.size() < limit_ && done_ == slots_.size()) slots_.emplace_back();
    }
    /// Keeps the log, and leaves an empty one in its place. What could be redone is dropped, and the oldest if need be.
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

    /// The proxies that were resolved since the last log: they are taken back before anything else is undone or redone,
    /// and the next reads resolve them again.
    UndoLog& resolved() noexcept { return resolved_; }
    /// A log is to follow: what was resolved now lies between two, and is undone and redone with the earlier one.
    void settle() {
        if (done_ == 0) return resolved_.discard(disposal_);
        at(done_ - 1).reserveSteps(resolved_.steps.size());
        resolved_.moveSteps(at(done_ - 1));
    }

    /// Takes the latest done logs of another history, as many as fit.
    void takeOver(History& other) {
        for (std::size_t i = other.done_ - std::min(other.done_, limit_); i < other.done_; ++i) {
            reserve();
            push(other.at(i));
        }
        resolved_.swap(other.resolved_);
    }

    /// The log to undo or redo next; null if there is none. `step` then moves on.
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

    /// What was destroyed by a log is in use by those before it, and what was born in one by those after it; so logs
    /// go oldest first, undone ones latest first.
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
    std::size_t first_ = 0;  // not 0 only once the ring is full
    std::size_t done_ = 0;
    std::size_t undone_ = 0;
};

}  // namespace quay::zero
