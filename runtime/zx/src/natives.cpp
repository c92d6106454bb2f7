#include "contents.h"

namespace zx {

Natives::Natives(Natives const& other)
    : className_(other.className_), operations_(other.operations_), elements_(other.elements_.size()) {
    try {
        for (std::size_t i = 0; i < elements_.size(); ++i) {
            elements_[i] = other.elements_[i] != nullptr ? operations_->copy(other.elements_[i]) : nullptr;
        }
    } catch (...) {
        clear();
        throw;
    }
}

void Natives::set(std::size_t index, void* native) noexcept {
    void* const former = std::exchange(elements_[index], native);
    if (former != nullptr && former != native) {
        operations_->destroy(former);
    }
}

bool Natives::equals(Natives const& other) const {
    if (className_ != other.className_ || operations_ != other.operations_) {
        return false;
    }
    for (std::size_t i = 0; i < elements_.size(); ++i) {
        void const* const left = elements_[i];
        void const* const right = other.elements_[i];
        bool const comparable = left != nullptr && right != nullptr && operations_->equals != nullptr;
        if (left != right && !(comparable && operations_->equals(left, right))) {
            return false;
        }
    }
    return true;
}

void Natives::clear() noexcept {
    for (std::size_t i = 0; i < elements_.size(); ++i) {
        set(i, nullptr);
    }
}

}  // namespace zx
