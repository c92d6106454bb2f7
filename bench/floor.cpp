#include "floor.h"

#include <bit>
#include <cstring>

namespace hand {

void Store::commit() {
    marks_.pop_back();
    if (!marks_.empty()) return;
    if (!ring_.empty()) {
        ring_[next_].swap(log_);
        next_ = (next_ + 1) % ring_.size();
        if (kept_ < ring_.size()) ++kept_;
    }
    log_.clear();
}

void Store::rollback() {
    while (log_.size() > marks_.back()) {
        Entry const& e = log_.back();
        e.restore(e.field, e.oldBits);
        log_.pop_back();
    }
    marks_.pop_back();
}

bool Store::undo() {
    if (kept_ == 0) return false;
    next_ = (next_ + ring_.size() - 1) % ring_.size();
    --kept_;
    auto& log = ring_[next_];
    for (std::size_t i = log.size(); i-- > 0;) log[i].restore(log[i].field, log[i].oldBits);
    log.clear();
    return true;
}

Id Store::drawId() noexcept {
    auto const next = [this] {
        seed_ ^= seed_ << 13;
        seed_ ^= seed_ >> 7;
        seed_ ^= seed_ << 17;
        return seed_;
    };
    return {next(), next()};
}

namespace {

void restoreReal(void* field, std::uint64_t bits) { *static_cast<double*>(field) = std::bit_cast<double>(bits); }

}  // namespace

void Small::setFirst(double value) {
    if (first_ == value) return;
    if (store_.open()) store_.log({&first_, std::bit_cast<std::uint64_t>(first_), &restoreReal, nullptr});
    first_ = value;
}

void Small::setSecond(double value) {
    if (second_ == value) return;
    if (store_.open()) store_.log({&second_, std::bit_cast<std::uint64_t>(second_), &restoreReal, nullptr});
    second_ = value;
}

}  // namespace hand
