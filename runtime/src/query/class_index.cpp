#include <quay/zero/meta/types.h>
#include <quay/zero/query/class_index.h>

#include <bit>
#include <utility>

namespace quay::zero::query {

void ClassIndex::catchUp(ElementList const& list) {
    try {
        if (stale_) startOver();
        if (gaps_ > members_.size() / 2 + 1024) closeGaps();
        if (indexedUpTo_ == list.last()) return;
        for (Element* e = indexedUpTo_ == nullptr ? list.first() : ElementList::next(*indexedUpTo_); e != nullptr;
             e = ElementList::next(*e)) {
            if (!has(*e)) add(*e);
            indexedUpTo_ = e;
        }
    } catch (...) {
        startOver();
        throw;
    }
}

void ClassIndex::add(Element& e) {
    auto const number = static_cast<std::uint32_t>(members_.size());
    members_.push_back(&e);
    e.setFlag(Element::kClassed, true);
    if (!e.isAlive()) ++dead_;
    // Meta classes live as long as the process, so a class whose library is gone does no harm.
    byClass_[e.getMetaClass().impl()].push_back(number);
    if (keepsNumbers_) numbers_.emplace(&e, number);
}

void ClassIndex::takeOut(Element& e) noexcept {
    auto const found = numbers_.find(&e);
    if (found == numbers_.end()) {
        keepsNumbers_ = true;
        startOver();
        return;
    }
    members_[found->second] = nullptr;
    numbers_.erase(found);
    e.setFlag(Element::kClassed, false);
    --dead_;
    ++gaps_;
}

void ClassIndex::startOver() noexcept {
    for (Element* const e : members_) {
        if (e != nullptr) e->setFlag(Element::kClassed, false);
    }
    clear();
}

void ClassIndex::clear() noexcept {
    members_.clear();
    byClass_.clear();
    numbers_.clear();
    stale_ = false;
    dead_ = 0;
    gaps_ = 0;
    indexedUpTo_ = nullptr;
}

/// Numbers the members anew, the dead with the living.
void ClassIndex::closeGaps() {
    std::vector<Element*> const old = std::exchange(members_, {});
    Element* const upTo = indexedUpTo_;
    for (Element* const e : old) {
        if (e != nullptr) e->setFlag(Element::kClassed, false);
    }
    clear();
    for (Element* const e : old) {
        if (e != nullptr) add(*e);
    }
    indexedUpTo_ = upTo;
}

ClassIndex::Walk::Walk(ClassIndex const& index, meta::Class const& cls, SearchClassMatchMode mode) : index_(index) {
    std::vector<Numbers const*> found;
    if (mode == SearchClassMatchMode::Exact) {
        auto const exact = index.byClass_.find(cls.impl());
        if (exact != index.byClass_.end()) found.push_back(&exact->second);
    } else {
        for (auto const& [of, numbers] : index.byClass_) {
            if (static_cast<meta::Class::Impl const*>(of)->conformsTo(cls)) found.push_back(&numbers);
        }
    }
    if (found.size() == 1) {
        only_ = found.front();
    } else if (!found.empty()) {
        several_.resize((index.members_.size() + kBlock - 1) / kBlock);
        for (Numbers const* numbers : found) {
            for (std::uint32_t const n : *numbers) several_[n / kBlock] |= std::uint64_t{1} << (n % kBlock);
        }
    }
}

unsigned ClassIndex::Walk::next(Element** block) {
    unsigned count = 0;
    if (only_ != nullptr) {
        while (count < kBlock && position_ < only_->size()) count = take((*only_)[position_++], block, count);
        return count;
    }
    while (count == 0 && position_ < several_.size()) {
        for (std::uint64_t left = several_[position_]; left != 0; left &= left - 1) {
            auto const number = static_cast<std::uint32_t>(position_ * kBlock) + std::countr_zero(left);
            count = take(static_cast<std::uint32_t>(number), block, count);
        }
        ++position_;
    }
    return count;
}

}  // namespace quay::zero::query
