#include <quay/zero/class_chain.h>
#include <quay/zero/meta/no_such_property.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/value.h>

namespace quay::zero {

// Descriptors of properties without a value of their own keep nothing.
void PropertyDescriptor::save(ModelElement::Impl const&, Cell&) const {}
void PropertyDescriptor::exchange(ModelElement::Impl&, Cell&) const noexcept {}
void PropertyDescriptor::restore(ModelElement::Impl&, Cell const&) const {}
bool PropertyDescriptor::unchanged(ModelElement::Impl const&, Cell const&) const { return true; }
void PropertyDescriptor::discard(Cell&) const noexcept {}
void PropertyDescriptor::relocate(Cell&, Cell&) const noexcept {}
Value PropertyDescriptor::wrap(ModelElement::Impl const&, meta::Property const&, Cell&) const { return {}; }

bool PropertyDescriptor::has(ModelElement::Impl const&) const { return false; }
Value PropertyDescriptor::get(ModelElement::Impl const& element, meta::Property const& property,
                              ReflectionPrivateTag const&) const {
    meta::reportNoSuchProperty(property, element.getMetaClass());
}
void PropertyDescriptor::set(ModelElement::Impl& element, meta::Property const& property, Value const&,
                             ReflectionPrivateTag const&) const {
    meta::reportNoSuchProperty(property, element.getMetaClass());
}

void PropertyDescriptor::join(ModelElement::Impl&, ModelElement const&) const {}
void PropertyDescriptor::leave(ModelElement::Impl&, ModelElement const&) const {}
void PropertyDescriptor::disassociate(ModelElement::Impl&) const {}
void PropertyDescriptor::destroyChildren(ModelElement::Impl&, bool, bool) const {}
ModelElement PropertyDescriptor::child(ModelElement::Impl const&) const { return {}; }
AbstractOwnedCollection* PropertyDescriptor::collection(ModelElement::Impl const&) const { return nullptr; }
void PropertyDescriptor::give(ModelElement::Builder&, meta::Property const&, Value const&) const {}
void PropertyDescriptor::build(ModelElement::Impl&, Cell const&) const {}
void PropertyDescriptor::place(ModelElement::Impl&, ModelElement const&) const {}

PropertyDescriptor const* ClassTable::descriptorAt(unsigned long index) const noexcept {
    ClassTable const* const level = levelOfIndex(this, index);
    if (level == nullptr) return nullptr;
    unsigned long const slot = index - level->firstIndex_;
    // Derived properties follow the others and have no index.
    bool const isThere = slot < level->descriptors_.size() && level->descriptors_[slot]->index() == index;
    return isThere ? level->descriptors_[slot] : nullptr;
}

PropertyDescriptor const* ClassTable::descriptorOf(meta::Property const& property) const noexcept {
    if (property.impl() == nullptr || !property) return nullptr;
    for (ClassTable const* level = this; level != nullptr; level = level->base()) {
        if (level == property->declaringTable()) return property->descriptor();
    }
    return nullptr;
}

std::uint16_t ClassTable::lastIndex() const noexcept {
    for (std::size_t i = descriptors_.size(); i-- > 0;) {
        if (descriptors_[i]->index() != 0) return descriptors_[i]->index();
    }
    return 0;
}

std::uint16_t ClassTable::highestIndex() const noexcept {
    return static_cast<std::uint16_t>(highestIndexInChain(this));
}

bool ClassTable::conformsTo(ClassTable const& other) const noexcept { return conformsInChain(this, &other); }

ClassTable const& ModelElement::classTable() {
    static constexpr ClassTable table{nullptr, 1, {}, nullptr, nullptr};
    return table;
}

bool conformsTo(ModelElement const& element, ClassTable const& table) noexcept {
    return element.impl() != nullptr && element->classTable().conformsTo(table);
}

}  // namespace quay::zero
