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

/// Holds a reference to each element from `enter` until `release`. In between, an element may be taken out, which makes
/// it dead, and put back, which makes it alive again, any number of times. Elements must be put back in exactly the
/// reverse order; neither operation allocates. The indices by id and by class are updated only by look-ups, so entering
/// an element costs nothing there.
class QUAY_ZERO_API ElementDirectory {
public:
    using Element = ModelElement::Impl;

    ElementDirectory() noexcept;
    ~ElementDirectory();
    ElementDirectory(ElementDirectory const&) = delete;
    ElementDirectory& operator=(ElementDirectory const&) = delete;

    /// A new random id, from this directory's own generator.
    boost::uuids::uuid drawId() noexcept { return ids_.draw(); }

    ElementList const& list() const noexcept { return list_; }
    std::size_t size() const noexcept { return list_.size(); }
    /// The live element of that id, or null. Cost: linear in the number of elements entered since the last look-up.
    Element* find(boost::uuids::uuid const& id) const {
        byId_.catchUp(list_);
        return byId_.find(id);
    }
    /// All elements by class. Cost: linear in the number of elements entered since the last call.
    query::ClassIndex const& byClass() const;

    /// Adds an element at the end of the list.
    void enter(Element& e) noexcept;
    /// Takes out the `count` elements from `first` to `last`, which become dead. An element that was never entered,
    /// such as a proxy, must be passed alone with a count of 0; it only becomes dead.
    void takeOut(Element& first, Element& last, std::size_t count) noexcept;
    /// Puts back a run that was taken out. Its elements are alive again.
    void putBack(Element& first, Element& last, std::size_t count) noexcept;
    /// Forgets an element that was taken out and will never be put back. The caller becomes responsible for its
    /// reference.
    void release(Element& e) noexcept;
    /// Forgets all elements at once and returns the first; the others are reached by their links.
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
