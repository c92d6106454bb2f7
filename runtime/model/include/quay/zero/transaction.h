// Transactions: the bracket in which a model is written.
#pragma once

#include <keel/export.h>

#include <boost/optional.hpp>
#include <cstdint>

namespace quay::zero {

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

    /// Ends the transaction; the value is the caller's note and isn't kept. A second call does nothing. An inner
    /// transaction that is still open is rolled back first. If it throws (memory), the transaction is still open.
    void commit(boost::optional<Value> const& result);

    bool isOpen() const noexcept;

private:
    friend class ModelImpl;
    Transaction(ModelImpl& model, std::uint64_t serial) noexcept;

    ModelImpl* model_;
    std::uint64_t serial_;
};

/// For element code: makes sure that a transaction is open. If none was, it opens one and commits it with `commit`;
/// otherwise it does nothing, and a caller that fails leaves its undoing to the transaction around it. Its operations
/// stand in <quay/zero/model.h>.
class QUAY_ZERO_API ImplicitTransaction {
public:
    explicit ImplicitTransaction(ModelImpl& model);
    ~ImplicitTransaction();
    ImplicitTransaction(ImplicitTransaction const&) = delete;
    ImplicitTransaction& operator=(ImplicitTransaction const&) = delete;

    void commit();

private:
    ModelImpl* opened_ = nullptr;
};

/// For element code: a savepoint of its own, inside an open transaction or as one. What happened since is undone
/// unless `commit` was reached. Inside another operation's savepoint it opens nothing: a failure unwinds that one. Its
/// operations stand in <quay/zero/model.h>.
class QUAY_ZERO_API Savepoint {
public:
    /// `isOperation`: those inside it open nothing. Not so where a caller may catch what one of them throws.
    explicit Savepoint(ModelImpl& model, bool isOperation = true);
    ~Savepoint();
    Savepoint(Savepoint const&) = delete;
    Savepoint& operator=(Savepoint const&) = delete;

    void commit();

private:
    ModelImpl* model_ = nullptr;
    std::uint64_t serial_ = 0;
};

}  // namespace quay::zero
