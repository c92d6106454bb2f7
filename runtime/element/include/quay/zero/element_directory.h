// The elements of a model: all in order of creation, by id and by class.
#pragma once

#include <quay/zero/element_list.h>
#include <quay/zero/id_index.h>
#include <quay/zero/random_ids.h>

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace quay::zero {

namespace query {
class ClassIndex;
}

/// Holds a reference to each element from `enter` until `release`. In between, an element may be taken out (it is dead)
/// and put back (alive again), in exactly the reverse order, any number of times; neither needs memory. The indices by
/// id and by class are built by the first look-up and caught up by the next ones, so entering an element touches
/// neither.
class QUAY_ZERO_API ElementDirectory {
public:
    using Element = ModelElement::Impl;

    ElementDirectory() noexcept;
    ~ElementDirectory();
    ElementDirectory(ElementDirectory const&) = delete;
    ElementDirectory& operator=(ElementDirectory const&) = delete;

    /// A fresh random id, from a generator of this directory's own.
    boost::uuids::uuid drawId() noexcept { return ids_.draw(); }

    ElementList const& list() const noexcept { return list_; }
    std::size_t size() const noexcept { return list_.size(); }
    /// The live element of that id, or null. Costs a step for each element that was entered since the last look-up.
    Element* find(boost::uuids::uuid const& id) const {
        byId_.catchUp(list_);
        return byId_.find(id);
    }
    /// All elements by class. Costs a step for each element that was entered since the last call.
    query::ClassIndex const& byClass() const;

    /// Adds an element at the end of the list, and counts it.
    void enter(Element& e) noexcept;
    /// Takes out the run of `count` elements from `first` to `last`, which turn dead. Elements that were never entered,
    /// such as proxies, come alone and with count 0; they only turn dead.
    void takeOut(Element& first, Element& last, std::size_t count) noexcept;
    /// Puts back a run that was taken out. Its elements are alive again.
    void putBack(Element& first, Element& last, std::size_t count) noexcept;
    /// Forgets an element that was taken out and will never be put back. Its reference is left to the caller.
    void release(Element& e) noexcept;
    /// Forgets all elements at once, and answers the first; the others follow by their links.
    Element* clear() noexcept;

    static bool isBornSince(Element const& e, std::uint64_t serial) noexcept { return e.track_.isBornSince(serial); }
    static bool wasEntered(Element const& e) noexcept { return (e.flags_ & Element::kListed) != 0; }

private:
    ElementList list_;
    mutable IdIndex byId_;
    mutable std::unique_ptr<query::ClassIndex> byClass_;  // null until the first look-up
    RandomIds ids_;
};

}  // namespace quay::zero
