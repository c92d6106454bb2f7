#include <quay/zero/element_directory.h>

#include <utility>

namespace quay::zero {

void ElementDirectory::enter(Element& e) noexcept {
    e.addRef();
    e.setFlag(Element::kListed, true);
    list_.append(e);
}

void ElementDirectory::takeOut(Element& first, Element& last, std::size_t count) noexcept {
    for (Element* e = &last;; e = ElementList::previous(*e)) {
        byId_.forget(*e);
        byClass_.leaving(*e);
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
    for (Element* e = &last;; e = ElementList::previous(*e)) {  // in reverse: `returned` looks at the next element
        byClass_.returned(*e);
        if (e == &first) break;
    }
    if (count > 0) list_.putBack(first, last, count);
}

ElementDirectory::Element* ElementDirectory::clear() noexcept {
    Element* const first = list_.first();
    list_ = ElementList();
    byId_.clear();
    byClass_.clear();
    return first;
}

}  // namespace quay::zero
