#include <quay/zero/id_index.h>

#include <cstring>

namespace quay::zero {

// Ids need not be random, so both halves affect every bit of the position.
std::size_t IdIndex::home(boost::uuids::uuid const& id) const noexcept {
    std::uint64_t words[2];
    std::memcpy(words, &id, sizeof words);
    std::uint64_t h = (words[0] ^ (words[1] >> 32) ^ (words[1] << 32)) * 0x9e3779b97f4a7c15;
    h = (h ^ (h >> 32)) * 0xd6e8feb86659fd93;
    return static_cast<std::size_t>(h ^ (h >> 29)) & (table_.size() - 1);
}

IdIndex::Element* IdIndex::find(boost::uuids::uuid const& id) const noexcept {
    if (table_.empty()) return nullptr;
    for (std::size_t i = home(id);; i = (i + 1) & (table_.size() - 1)) {
        Element* const e = table_[i];
        if (e == nullptr) return nullptr;
        if (e->isAlive() && e->uuid() == id) return e;
    }
}

void IdIndex::grow(std::size_t elements) {
    std::size_t length = table_.empty() ? 16 : table_.size();
    while (elements * 3 > length * 2) length *= 2;
    if (length == table_.size()) return;
    std::vector<Element*> old(length, nullptr);
    old.swap(table_);
    for (Element* e : old) {
        if (e == nullptr) continue;
        std::size_t i = home(e->uuid());
        while (table_[i] != nullptr) i = (i + 1) & (table_.size() - 1);
        table_[i] = e;
    }
}

void IdIndex::add(Element& e) {
    grow(count_ + 1);
    std::size_t i = home(e.uuid());
    while (table_[i] != nullptr) i = (i + 1) & (table_.size() - 1);
    table_[i] = &e;
    ++count_;
    e.setFlag(Element::kIndexed, true);
}

void IdIndex::remove(Element& e) noexcept {
    if ((e.flags_ & Element::kIndexed) == 0) return;
    e.setFlag(Element::kIndexed, false);
    std::size_t const mask = table_.size() - 1;
    std::size_t hole = home(e.uuid());
    while (table_[hole] != &e) hole = (hole + 1) & mask;
    // Entries that were displaced past the hole move back into it, so that no search ends early.
    for (std::size_t i = (hole + 1) & mask; table_[i] != nullptr; i = (i + 1) & mask) {
        std::size_t const wanted = home(table_[i]->uuid());
        if (((i - wanted) & mask) >= ((i - hole) & mask)) {
            table_[hole] = table_[i];
            hole = i;
        }
    }
    table_[hole] = nullptr;
    --count_;
}

void IdIndex::clear() noexcept {
    table_.clear();
    count_ = 0;
    indexedUpTo_ = nullptr;
}

void IdIndex::catchUp(ElementList const& list) {
    if (indexedUpTo_ == list.last()) return;
    for (Element* e = indexedUpTo_ == nullptr ? list.first() : ElementList::next(*indexedUpTo_); e != nullptr;
         e = ElementList::next(*e)) {
        if ((e->flags_ & Element::kIndexed) == 0) add(*e);
        indexedUpTo_ = e;
    }
}

}  // namespace quay::zero
