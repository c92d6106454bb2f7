// The texts of a model before and after each change, for random tests without a reference model.
#pragma once

#include <quay/zero/change_set.h>
#include <quay/zero/model.h>
#include <rapidcheck.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace nodes {

/// Makes changes, and checks that after rolling back, undo and redo the model reads as it did then.
class Trace {
public:
    Trace(quay::zero::Model model, std::size_t limit, std::function<std::string()> read)
        : model_(std::move(model)), limit_(limit), read_(std::move(read)) {
        model_->enableHistory(limit);
        model_->addListener([this](quay::zero::ChangeSet const&) { ++told_; });
    }
    ~Trace() {
        while (!open_.empty()) open_.pop_back();
    }
    Trace(Trace const&) = delete;
    Trace& operator=(Trace const&) = delete;

    int told() const { return told_; }
    bool isOpen() const { return !open_.empty(); }

    void begin() {
        if (open_.size() < 4) open_.push_back({model_->beginTransaction(false), read_(), told_});
    }
    void end(bool commit) {
        if (open_.empty()) return;
        std::string const last = commit ? read_() : open_.back().before;
        if (commit) open_.back().transaction.commit(boost::none);
        std::string const before = open_.back().before;
        bool const kept = told_ != open_.back().told;
        open_.pop_back();
        RC_ASSERT(read_() == last);
        if (!commit || !open_.empty()) return;
        // A transaction that changed the text must be in the history. One that didn't may be, since collections of two
        // or more members always count as changed.
        RC_ASSERT(kept || before == last);
        if (!kept) return;
        undone_.clear();
        done_.emplace_back(before, last);
        if (done_.size() > limit_) done_.erase(done_.begin());
    }
    /// Runs `f` in a transaction of its own. A refused operation must change nothing.
    template <class F>
    void change(F&& f) {
        std::size_t const depth = open_.size();
        open_.push_back({model_->beginTransaction(false), read_(), told_});
        bool done = false;
        try {
            f();
            done = true;
        } catch (std::exception const&) {
        }
        RC_ASSERT(open_.size() == depth + 1);
        end(done);
    }
    /// Undoes or redoes; returns whether there was anything to undo or redo.
    bool replay(bool redo) {
        if (!open_.empty()) return false;
        auto& from = redo ? undone_ : done_;
        bool const did = redo ? model_->redo() : model_->undo();
        RC_ASSERT(did == !from.empty());
        if (!did) return false;
        RC_ASSERT(read_() == (redo ? from.back().second : from.back().first));
        (redo ? done_ : undone_).push_back(from.back());
        from.pop_back();
        return true;
    }

private:
    struct Open {
        quay::zero::Transaction transaction;
        std::string before;
        int told;
    };
    quay::zero::Model model_;
    std::size_t limit_;
    std::function<std::string()> read_;
    int told_ = 0;
    std::vector<Open> open_;
    std::vector<std::pair<std::string, std::string>> done_;  // the text before and after
    std::vector<std::pair<std::string, std::string>> undone_;
};

}  // namespace nodes
