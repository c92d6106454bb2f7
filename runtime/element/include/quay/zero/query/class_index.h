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

/// Numbers elements in order of creation and keeps them by class. The first query builds it and later queries update
/// it, so it costs nothing without queries. It holds an element, dead or alive, from its first indexing until the model
/// releases it; walks skip dead elements, so undoing needn't change it.
class QUAY_ZERO_API ClassIndex {
public:
    using Element = ModelElement::Impl;
    class Walk;

    ClassIndex() noexcept;
    ~ClassIndex();
    ClassIndex(ClassIndex const&) = delete;
    ClassIndex& operator=(ClassIndex const&) = delete;

    /// Adds all elements of the list that aren't in the index yet.
    void catchUp(ElementList const& list);
    /// Forgets all elements at once, without changing their flags.
    void clear() noexcept;

    /// To be called when an element is taken out of the list (`leaving`), is put back (`returned`), or is released
    /// (`remove`).
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
            setMissing(e, true);  // its number would have to lie before that of a member
            ++missing_;
        }
    }
    void remove(Element& e) noexcept {
        if (has(e)) takeOut(e);
    }

private:
    /// The members of one class and their numbers, in rising order. Removed members leave gaps; when more than about
    /// half are gaps, they are closed.
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

    std::vector<Element*> members_;  // by number; null for a removed member
    std::unordered_map<Element const*, Members> byClass_;
    // The numbers by member. They are kept only once a member had to be found; that first time, the index starts over.
    class NumberSet;
    std::unique_ptr<NumberSet> numbers_;
    bool keepsNumbers_ = false;
    std::size_t missing_ = 0;  // elements of the list that aren't members, with a member behind them
    std::size_t dead_ = 0;
    std::size_t gaps_ = 0;
    Element* indexedUpTo_ = nullptr;  // all elements of the list up to this one are members; null for none
};

/// Visits the live elements of a class in order of creation. The index must not change meanwhile.
class QUAY_ZERO_API ClassIndex::Walk {
public:
    static constexpr unsigned kBlock = 64;

    Walk(ClassIndex const& index, meta::Class const& cls, SearchClassMatchMode mode);
    /// The next elements, at most kBlock; none at the end. The result is valid until the next call.
    std::span<Element* const> next();

private:
    unsigned take(Element* e, unsigned count) noexcept {
        if (e == nullptr || !e->isAlive()) return count;
        block_[count] = e;
        return count + 1;
    }

    ClassIndex const& index_;
    Members const* only_ = nullptr;       // the members of a single class
    std::vector<std::uint64_t> several_;  // several classes: a bit for each member's number
    std::size_t position_ = 0;            // of the next element in `only_`, or the next word in `several_`
    Element* block_[kBlock];
};

}  // namespace query
}  // namespace quay::zero
