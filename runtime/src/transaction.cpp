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

ImplicitTransaction::ImplicitTransaction(ModelImpl& model) : opened_(nullptr) {
    if (model.inTransaction()) return;
    model.openLevel(false, true);
    opened_ = &model;
}

ImplicitTransaction::~ImplicitTransaction() {
    if (opened_ != nullptr) opened_->rollbackLevel(0);
}

void ImplicitTransaction::commit() {
    if (opened_ == nullptr) return;
    opened_->commitLevel(0);
    opened_ = nullptr;
}

Savepoint::Savepoint(ModelImpl& model) : model_(nullptr), serial_(0) {
    if (model.inOperation()) return;
    serial_ = model.openLevel(false, true);
    model_ = &model;
}

Savepoint::~Savepoint() {
    if (model_ != nullptr) model_->rollbackLevel(serial_);
}

void Savepoint::commit() {
    ModelImpl* const model = std::exchange(model_, nullptr);
    if (model == nullptr) return;
    try {
        model->commitLevel(serial_);
    } catch (...) {
        model_ = model;
        throw;
    }
}

}  // namespace quay::zero
