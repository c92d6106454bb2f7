// A model's elements by class, for queries.
#pragma once

#include <quay/zero/element_list.h>
#include <quay/zero/query/match_mode.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

namespace quay::zero {

namespace meta {
class Class;
}

namespace query {

/// Numbers elements in order of creation, and keeps them by class. The first query builds it and the next
/// ones catch it up, so whoever never queries pays nothing. It holds an element from its first indexing until the
/// element is let go for good, dead or alive, and walks pass over the dead; so undoing never touches it.
class QUAY_ZERO_API ClassIndex {
public:
    using Element = ModelElement::Impl;
    class Walk;

    ClassIndex() noexcept;
    ~ClassIndex();
    ClassIndex(ClassIndex const&) = delete;
    ClassIndex& operator=(ClassIndex const&) = delete;

    /// Adds all elements of the list that aren't there yet.
    void catchUp(ElementList const& list);
    /// The elements are gone, all at once.
    void clear() noexcept;

    /// The element is leaving the list, has come back into it, or is let go for good.
    void leaving(Element const& e) noexcept {
        if (indexedUpTo_ == &e) indexedUpTo_ = ElementList::previous(e);
        if (has(e)) ++dead_;
        if (isMissing(e)) {
            setMissing(e, false);
            if (missing_ > 0) --missing_;
        }
    }
    void returned(Element const& e) noexcept {
        if (has(e)) {
            --dead_;
        } else if (Element const* const next = ElementList::next(e);
                   next != nullptr && (has(*next) || isMissing(*next))) {
            setMissing(e, true);  // it belongs somewhere before the end
            ++missing_;
        }
    }
    void remove(Element& e) noexcept {
        if (has(e)) takeOut(e);
    }

private:
    /// The members of one class, and their numbers, which rise. Those that are gone leave gaps, not more than half.
    struct Members {
        std::vector<Element*> elements;
        std::vector<std::uint32_t> numbers;
        std::size_t gaps = 0;

        void takeOut(std::uint32_t number) noexcept;
    };

    static bool has(Element const& e) noexcept { return (e.flags_ & Element::kClassed) != 0; }
    static bool isMissing(Element const& e) noexcept { return (e.flags_ & Element::kMissing) != 0; }
    static void setMissing(Element const& e, bool on) noexcept {
        const_cast<Element&>(e).setFlag(Element::kMissing, on);
    }
    void add(Element& e);
    void takeOut(Element& e) noexcept;
    void startOver() noexcept;
    void closeGaps();

    std::vector<Element*> members_;  // by number; null: gone
    std::unordered_map<Element const*, Members> byClass_;
    // The members' numbers, kept from the first time on that a member had to be found; until then, all start over.
    class NumberSet;
    std::unique_ptr<NumberSet> numbers_;
    bool keepsNumbers_ = false;
    std::size_t missing_ = 0;  // elements of the list that aren't members and stand before some that are
    std::size_t dead_ = 0;
    std::size_t gaps_ = 0;
    Element* indexedUpTo_ = nullptr;  // all elements of the list up to this one are members; null: none is
};

/// Visits the live elements of a class in order of creation, a step for each. The index may not change meanwhile.
class QUAY_ZERO_API ClassIndex::Walk {
public:
    static constexpr unsigned kBlock = 64;

    Walk(ClassIndex const& index, meta::Class const& cls, SearchClassMatchMode mode);
    /// Up to kBlock of the next elements; none at the end. They are valid until the next call.
    std::span<Element* const> next();

private:
    unsigned take(Element* e, unsigned count) noexcept {
        if (e == nullptr || !e->isAlive()) return count;
        block_[count] = e;
        return count + 1;
    }

    ClassIndex const& index_;
    Members const* only_ = nullptr;       // of a single class
    std::vector<std::uint64_t> several_;  // of several: a bit for each number
    std::size_t position_ = 0;            // the next element of the one, or word of the other
    Element* block_[kBlock];
};

}  // namespace query
}  // namespace quay::zero
