#include <quay/zero/journal.h>
#include <quay/zero/transaction.h>

#include <utility>

namespace quay::zero {

Transaction::Transaction(Transaction&& other) noexcept
    : model_(std::move(other.model_)), journal_(std::exchange(other.journal_, nullptr)), serial_(other.serial_) {}

Transaction::~Transaction() {
    if (isOpen()) journal_->rollBack(serial_);
}

bool Transaction::isOpen() const noexcept { return journal_ != nullptr && journal_->isOpen(serial_); }

void Transaction::commit(boost::none_t /*result*/) {
    if (isOpen()) journal_->commit(serial_);
}

void Transaction::commit(boost::optional<Value> const& /*result*/) { commit(boost::none); }

}  // namespace quay::zero
