// Transactions: the bracket in which a model is written.
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

/// An open transaction. They nest: an inner one is a savepoint whose commit joins the outer; only the outermost commit
/// makes the work final, tells listeners and feeds the history. One that ends without commit undoes exactly its own
/// work. Keeps its model alive.
class [[nodiscard]] QUAY_ZERO_API Transaction {
public:
    Transaction(Transaction&& other) noexcept;
    Transaction& operator=(Transaction&&) = delete;
    /// Rolls back what wasn't committed. Never throws, allocates nothing.
    ~Transaction();

    /// Ends the transaction. A second call does nothing. An inner transaction that is still open is rolled back first.
    /// If it throws (memory), the transaction is still open.
    void commit(boost::none_t);
    /// Ends the transaction; the value is the caller's note and isn't kept.
    void commit(boost::optional<Value> const& result);

    bool isOpen() const noexcept;

private:
    friend class ModelImpl;
    Transaction(ElementImpl& model, Journal& journal, std::uint64_t serial) noexcept
        : model_(&model), journal_(&journal), serial_(serial) {}

    CountedHandle model_;
    Journal* journal_;  // null once it was moved from
    std::uint64_t serial_;
};

}  // namespace quay::zero
