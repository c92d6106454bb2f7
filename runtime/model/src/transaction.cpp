#include <quay/zero/journal.h>
#include <quay/zero/transaction.h>

#include <utility>

namespace quay::zero {

Transaction::Transaction(Transaction&& other) noexcept
    : model_(std::move(other.model_)),
      journal_(std::exchange(other.journal_, nullptr)),
      serial_(other.serial_),
      wasCommitted_(other.wasCommitted_) {}

Transaction::~Transaction() {
    if (isOpen()) journal_->rollBack(serial_);
}

bool Transaction::isOpen() const noexcept { return journal_ != nullptr && journal_->isOpen(serial_); }

void Transaction::commit() {
    if (!isOpen()) return;
    journal_->commit(serial_);
    wasCommitted_ = true;
}

void Transaction::commit(boost::optional<Value> const& /*result*/) { commit(); }

}  // namespace quay::zero
