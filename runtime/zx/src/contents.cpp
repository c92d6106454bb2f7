#include "contents.h"

namespace zx {
namespace {

constexpr std::size_t kFew = 16;

}  // namespace

std::optional<std::size_t> Structs::find(std::string_view name) const {
    if (!numbers_.empty()) {
        auto const found = numbers_.find(name);
        return found != numbers_.end() ? std::optional(found->second) : std::nullopt;
    }
    for (std::size_t number = 0; number < fields_.size(); ++number) {
        if (fields_[number].name == name) {
            return number;
        }
    }
    return std::nullopt;
}

Structs::Field& Structs::add(std::string_view name, std::size_t count) {
    if (numbers_.empty() && fields_.size() >= kFew) {
        decltype(numbers_) all;
        for (std::size_t number = 0; number < fields_.size(); ++number) {
            all.emplace(fields_[number].name, number);
        }
        numbers_ = std::move(all);
    }
    fields_.push_back({std::string(name), std::vector<zxArray*>(count)});
    if (!numbers_.empty()) {
        try {
            numbers_.emplace(name, fields_.size() - 1);
        } catch (...) {
            fields_.pop_back();
            throw;
        }
    }
    return fields_.back();
}

void Structs::remove(std::size_t number) {
    if (!numbers_.empty()) {
        numbers_.erase(fields_[number].name);
        for (auto& [name, other] : numbers_) {
            other -= other > number ? 1 : 0;
        }
    }
    fields_.erase(fields_.begin() + static_cast<std::ptrdiff_t>(number));
}

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
