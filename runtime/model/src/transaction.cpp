#include <quay/zero/model.h>
#include <quay/zero/transaction.h>
#include <quay/zero/value.h>

namespace quay::zero {

Transaction::Transaction(ModelImpl& model, std::uint64_t serial) noexcept : model_(&model), serial_(serial) {
    model_->addRef();
}

Transaction::Transaction(Transaction&& other) noexcept
    : model_(std::exchange(other.model_, nullptr)), serial_(other.serial_) {}

Transaction::~Transaction() {
    if (model_ == nullptr) return;
    if (model_->isOpen(serial_)) model_->rollbackLevel(serial_);
    model_->removeRef();
}

bool Transaction::isOpen() const noexcept { return model_ != nullptr && model_->isOpen(serial_); }

void Transaction::commit(boost::optional<Value> const& /*result*/) {
    if (isOpen()) model_->commitLevel(serial_);
}

}  // namespace quay::zero
