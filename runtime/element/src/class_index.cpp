#include <quay/zero/meta/property.h>
#include <quay/zero/query/class_index.h>

#include <algorithm>
#include <bit>
#include <boost/unordered/unordered_flat_set.hpp>
#include <functional>
#include <utility>

namespace quay::zero::query {

/// The numbers of all members; a member's number is found by the address of the element.
class ClassIndex::NumberSet {
public:
    explicit NumberSet(std::vector<Element*> const& members) : set_(0, Hash{members}, Same{members}) {}

    void add(std::uint32_t number) { set_.insert(number); }
    /// Removes the number of a member and returns it.
    std::uint32_t takeOut(Element const& e) noexcept {
        auto const found = set_.find(&e);
        std::uint32_t const number = *found;
        set_.erase(found);
        return number;
    }

private:
    struct Hash {
        using is_transparent = void;
        std::reference_wrapper<std::vector<Element*> const> members;
        std::size_t operator()(Element const* e) const noexcept { return std::hash<Element const*>()(e); }
        std::size_t operator()(std::uint32_t number) const noexcept { return (*this)(members.get()[number]); }
    };
    struct Same {
        using is_transparent = void;
        std::reference_wrapper<std::vector<Element*> const> members;
        bool operator()(std::uint32_t a, std::uint32_t b) const noexcept { return a == b; }
        bool operator()(Element const* e, std::uint32_t number) const noexcept { return e == members.get()[number]; }
        bool operator()(std::uint32_t number, Element const* e) const noexcept { return e == members.get()[number]; }
    };

    boost::unordered_flat_set<std::uint32_t, Hash, Same> set_;
};

ClassIndex::ClassIndex() noexcept = default;
ClassIndex::~ClassIndex() = default;

void ClassIndex::catchUp(ElementList const& list) {
    try {
        if (missing_ > 0) startOver();
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
    e.setFlag(Element::kMissing, false);
    if (!e.isAlive()) ++dead_;
    // Meta classes live as long as the process, so the pointer stays valid when the library of the class is unloaded.
    Members& of = byClass_[e.getMetaClass().ModelElement::impl()];
    of.elements.push_back(&e);
    of.numbers.push_back(number);
    if (!keepsNumbers_) return;
    if (numbers_ == nullptr) numbers_ = std::make_unique<NumberSet>(members_);
    numbers_->add(number);
}

void ClassIndex::takeOut(Element& e) noexcept {
    if (numbers_ == nullptr) {
        keepsNumbers_ = true;
        startOver();
        return;
    }
    std::uint32_t const number = numbers_->takeOut(e);
    members_[number] = nullptr;
    byClass_.find(e.getMetaClass().ModelElement::impl())->second.takeOut(number);
    e.setFlag(Element::kClassed, false);
    --dead_;
    ++gaps_;
}

void ClassIndex::Members::takeOut(std::uint32_t number) noexcept {
    elements[static_cast<std::size_t>(std::lower_bound(numbers.begin(), numbers.end(), number) - numbers.begin())] =
        nullptr;
    if (++gaps <= elements.size() / 2 + 16) return;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (elements[i] == nullptr) continue;
        elements[kept] = elements[i];
        numbers[kept++] = numbers[i];
    }
    elements.resize(kept);
    numbers.resize(kept);
    gaps = 0;
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
    numbers_.reset();
    missing_ = 0;
    dead_ = 0;
    gaps_ = 0;
    indexedUpTo_ = nullptr;
}

/// Numbers the members, dead ones included, without gaps.
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
    std::vector<Members const*> found;
    Element const* const type = cls.ModelElement::impl();
    if (mode == SearchClassMatchMode::Exact) {
        auto const exact = index.byClass_.find(type);
        if (exact != index.byClass_.end()) found.push_back(&exact->second);
    } else {
        for (auto const& [of, members] : index.byClass_) {
            if (static_cast<meta::MetaElement::Impl const*>(of)->isKindOf(type)) found.push_back(&members);
        }
    }
    if (found.size() == 1) {
        only_ = found.front();
    } else if (!found.empty()) {
        several_.resize((index.members_.size() + kBlock - 1) / kBlock);
        for (Members const* members : found) {
            for (std::uint32_t const n : members->numbers) several_[n / kBlock] |= std::uint64_t{1} << (n % kBlock);
        }
    }
}

std::span<ClassIndex::Element* const> ClassIndex::Walk::next() {
    unsigned count = 0;
    if (only_ != nullptr) {
        std::span<Element* const> const left = std::span(only_->elements).subspan(position_);
        if (only_->gaps == 0 && index_.dead_ == 0) {
            auto const block = left.first(std::min<std::size_t>(left.size(), kBlock));
            position_ += block.size();
            // Prefetches the next block, since elements lie scattered in memory.
            auto const coming = left.subspan(block.size());
            for (Element* const e : coming.first(std::min<std::size_t>(coming.size(), kBlock))) {
                __builtin_prefetch(reinterpret_cast<char const*>(e) + sizeof(Element));
            }
            return block;
        }
        for (std::size_t i = 0; i < left.size() && count < kBlock; ++i, ++position_) count = take(left[i], count);
    }
    for (; count == 0 && position_ < several_.size(); ++position_) {
        for (std::uint64_t left = several_[position_]; left != 0; left &= left - 1) {
            std::size_t const number = position_ * kBlock + static_cast<unsigned>(std::countr_zero(left));
            count = take(index_.members_[number], count);
        }
    }
    return {block_, count};
}

}  // namespace quay::zero::query
