// Transactions: the scopes in which a model is written.
#pragma once

#include <keel/export.h>
#include <quay/zero/handle.h>

#include <boost/none.hpp>
#include <boost/optional/optional_fwd.hpp>
#include <cstdint>

namespace quay::zero {

class Journal;
class ModelImpl;
class Value;

/// An open transaction. Transactions nest: an inner one is a savepoint, and committing it joins it to the outer one.
/// Only the outermost commit makes the work final, tells listeners and enters the history. A transaction that is
/// destructed without commit is rolled back, which undoes exactly its own work. It keeps its model alive.
class [[nodiscard]] QUAY_ZERO_API Transaction {
public:
    Transaction(Transaction&& other) noexcept;
    Transaction& operator=(Transaction&&) = delete;
    /// Rolls back what wasn't committed. Never throws and allocates nothing.
    ~Transaction();

    /// Commits the transaction. A call for one that isn't open does nothing. Inner transactions that are still open are
    /// rolled back first. If it fails for lack of memory, it throws and the transaction is still open.
    void commit();
    /// The same; the value is ignored.
    void commit(boost::none_t) { commit(); }
    void commit(boost::optional<Value> const& result);

    /// Whether the transaction was neither committed nor rolled back, nor was one around it.
    bool isOpen() const noexcept;
    /// Whether `commit` committed this transaction.
    bool wasCommitted() const noexcept { return wasCommitted_; }

private:
    friend class ModelImpl;
    Transaction(ElementImpl& model, Journal& journal, std::uint64_t serial) noexcept
        : model_(&model), journal_(&journal), serial_(serial) {}

    CountedHandle model_;
    Journal* journal_;  // null once it was moved from
    std::uint64_t serial_;
    bool wasCommitted_ = false;
};

}  // namespace quay::zero
