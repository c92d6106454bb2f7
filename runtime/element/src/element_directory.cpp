#include <quay/zero/element_directory.h>
#include <quay/zero/query/class_index.h>

#include <utility>

namespace quay::zero {

ElementDirectory::ElementDirectory() noexcept = default;
ElementDirectory::~ElementDirectory() = default;

query::ClassIndex const& ElementDirectory::byClass() const {
    if (byClass_ == nullptr) byClass_ = std::make_unique<query::ClassIndex>();
    byClass_->catchUp(list_);
    return *byClass_;
}

void ElementDirectory::enter(Element& e) noexcept {
    e.addRef();
    e.setFlag(Element::kListed, true);
    list_.append(e);
}

void ElementDirectory::takeOut(Element& first, Element& last, std::size_t count) noexcept {
    for (Element* e = &last;; e = ElementList::previous(*e)) {
        byId_.forget(*e);
        if (byClass_ != nullptr) byClass_->leaving(*e);
        e->setFlag(Element::kAlive, false);
        if (e == &first) break;
    }
    if (count > 0) list_.takeOut(first, last, count);
}

void ElementDirectory::putBack(Element& first, Element& last, std::size_t count) noexcept {
    for (Element* e = &first;; e = ElementList::next(*e)) {
        if (wasEntered(*e)) byId_.returned(*e);
        e->setFlag(Element::kAlive, true);
        if (e == &last) break;
    }
    for (Element* e = &last; byClass_ != nullptr; e = ElementList::previous(*e)) {
        byClass_->returned(*e);  // in reverse, since `returned` looks at the next element
        if (e == &first) break;
    }
    if (count > 0) list_.putBack(first, last, count);
}

void ElementDirectory::release(Element& e) noexcept {
    byId_.remove(e);
    if (byClass_ != nullptr) byClass_->remove(e);
}

ElementDirectory::Element* ElementDirectory::clear() noexcept {
    Element* const first = list_.first();
    list_ = ElementList();
    byId_.clear();
    byClass_.reset();
    return first;
}

}  // namespace quay::zero
