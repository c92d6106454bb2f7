// Brackets of element code around what it changes.
#pragma once

#include <quay/zero/journal.h>

#include <cstdint>

namespace quay::zero {

/// Makes sure that a transaction is open. If none was, it opens one and commits it with `commit`; otherwise it does
/// nothing, and a caller that fails leaves its undoing to the transaction around it.
class ImplicitTransaction {
public:
    explicit ImplicitTransaction(Journal& journal) {
        if (journal.inTransaction()) return;
        journal.open(false, true);
        opened_ = &journal;
    }
    ~ImplicitTransaction() {
        if (opened_ != nullptr) opened_->rollBack(0);
    }
    ImplicitTransaction(ImplicitTransaction const&) = delete;
    ImplicitTransaction& operator=(ImplicitTransaction const&) = delete;

    void commit() {
        if (opened_ == nullptr) return;
        opened_->commit(0);
        opened_ = nullptr;
    }

private:
    Journal* opened_ = nullptr;
};

/// A savepoint of its own, inside an open transaction or as one. What happened since is undone unless `commit` was
/// reached. Inside another operation's savepoint it opens nothing: a failure rolls that one back.
class Savepoint {
public:
    /// `isOperation`: those inside it open nothing. Not so where a caller may catch what one of them throws.
    explicit Savepoint(Journal& journal, bool isOperation = true) {
        if (journal.inOperation()) return;
        serial_ = journal.open(false, isOperation);
        journal_ = &journal;
    }
    ~Savepoint() {
        if (journal_ != nullptr) journal_->rollBack(serial_);
    }
    Savepoint(Savepoint const&) = delete;
    Savepoint& operator=(Savepoint const&) = delete;

    void commit() {
        if (journal_ == nullptr) return;
        journal_->commit(serial_);
        journal_ = nullptr;
    }

private:
    Journal* journal_ = nullptr;
    std::uint64_t serial_ = 0;
};

}  // namespace quay::zero
