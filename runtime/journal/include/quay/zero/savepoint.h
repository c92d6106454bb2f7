// Scopes in which code of elements changes a model.
#pragma once

#include <quay/zero/journal.h>

#include <cstdint>

namespace quay::zero {

/// Makes sure that a transaction is open. If none was, it opens one, which is rolled back unless `commit` is reached.
/// Otherwise it does nothing, and a caller that fails relies on the transaction around it to be rolled back.
class ImplicitTransaction {
public:
    explicit ImplicitTransaction(Journal& journal) {
        journal.requireUnlocked();
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

/// Opens a savepoint, or a transaction if none is open. It is rolled back unless `commit` is reached. Inside the
/// savepoint of another operation it opens nothing: on failure, that one is rolled back.
class Savepoint {
public:
    /// `isOperation`: a Savepoint inside this one opens nothing. Must be false where a caller may catch an exception of
    /// an inner operation and go on.
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
