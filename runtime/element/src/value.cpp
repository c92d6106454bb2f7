#include <quay/zero/meta/meta_element.h>
#include <quay/zero/value.h>

#include <boost/container_hash/hash.hpp>
#include <boost/uuid/uuid_hash.hpp>

namespace quay::zero {

std::size_t combineHashes(std::size_t before, std::size_t next) noexcept {
    boost::hash_combine(before, next);
    return before;
}

ValueMeta::ValueMeta(meta::Type const& type, ValueFlags flags) noexcept
    : type_(type.ModelElement::impl()), flags_(flags) {}

meta::Type ValueMeta::getType() const { return meta::Type::of(type_); }

Value::Value(Value const& other) : meta_(other.meta_), operations_(other.operations_) {
    if (operations_ != nullptr) {
        operations_->copy(payload_, other.payload_);
    } else {
        pointAt(other.collection());
    }
}

Value::Value(Value&& other) noexcept
    : meta_(std::exchange(other.meta_, {})), operations_(std::exchange(other.operations_, nullptr)) {
    if (operations_ != nullptr) {
        operations_->move(payload_, other.payload_);
    } else {
        pointAt(other.payload_.get<AbstractOwnedCollection*>());
    }
    other.pointAt(nullptr);
}

void Value::swap(Value& other) noexcept {
    Value mine(std::move(*this));
    ::new (static_cast<void*>(this)) Value(std::move(other));
    // NOLINTNEXTLINE(bugprone-use-after-move): the moved-from value holds nothing and is constructed anew in place
    ::new (static_cast<void*>(&other)) Value(std::move(mine));
}

void* Value::data() const noexcept {
    if (operations_ == nullptr) return collection();
    auto& payload = const_cast<Cell&>(payload_);
    return operations_->outside == nullptr ? &payload : operations_->outside(payload);
}

std::size_t Value::hash() const { return operations_ == nullptr ? 0 : operations_->hash(data()); }

bool Value::equals(Value const& other) const {
    if (meta_.type_ != other.meta_.type_ || meta_.flags_ != other.meta_.flags_) return false;
    if (operations_ == nullptr || other.operations_ == nullptr) return data() == other.data();
    return operations_->equal(data(), other.data());
}

bool Value::isElementOf(meta::Class const& metaClass) const {
    return meta_.type_ != nullptr &&
           static_cast<meta::MetaElement::Impl*>(meta_.type_)->isKindOf(metaClass.ModelElement::impl());
}

void Value::reportIncompatible() const {
    auto const* const type = static_cast<meta::MetaElement::Impl const*>(meta_.type_);
    reportException(
        quay0::messages::CannotCastIncompatibleTypes(type == nullptr ? std::u16string() : type->getQualifiedName()));
}

std::size_t Value::hashOf(ModelElement const& element) noexcept {
    return element.impl() == nullptr ? 0 : boost::uuids::hash_value(element->uuid());
}

}  // namespace quay::zero
