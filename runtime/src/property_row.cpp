#include <quay/zero/builder.h>
#include <quay/zero/collection.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/property_row.h>
#include <quay/zero/report.h>
#include <quay/zero/value.h>

#include <quay0/messages.h>

namespace quay::zero {

namespace {

[[noreturn]] void reportUnknown(ModelElement::Impl const& element, meta::Property const& property) {
    std::u16string const name = property.impl() == nullptr ? std::u16string() : property->getName();
    reportException(quay0::messages::NoSuchProperty(name, element.getMetaClass()->getQualifiedName()));
}

}  // namespace

// A row without a value of its own keeps nothing.
void PropertyRow::save(ModelElement::Impl const&, Cell&) const {}
void PropertyRow::exchange(ModelElement::Impl&, Cell&) const noexcept {}
void PropertyRow::restore(ModelElement::Impl&, Cell const&) const {}
bool PropertyRow::unchanged(ModelElement::Impl const&, Cell const&) const { return true; }
void PropertyRow::discard(Cell&) const noexcept {}
void PropertyRow::relocate(Cell&, Cell&) const noexcept {}
Value PropertyRow::wrap(ModelElement::Impl const&, meta::Property const&, Cell&) const { return {}; }

bool PropertyRow::has(ModelElement::Impl const&) const { return false; }
Value PropertyRow::get(ModelElement::Impl const& element, meta::Property const& property,
                       ReflectionPrivateTag const&) const {
    reportUnknown(element, property);
}
void PropertyRow::set(ModelElement::Impl& element, meta::Property const& property, Value const&,
                      ReflectionPrivateTag const&) const {
    reportUnknown(element, property);
}

void PropertyRow::join(ModelElement::Impl&, ModelElement const&) const {}
void PropertyRow::leave(ModelElement::Impl&, ModelElement const&) const {}
void PropertyRow::disassociate(ModelElement::Impl&) const {}
void PropertyRow::destroyChildren(ModelElement::Impl&, bool, bool) const {}
ModelElement PropertyRow::child(ModelElement::Impl const&) const { return {}; }
AbstractOwnedCollection* PropertyRow::collection(ModelElement::Impl const&) const { return nullptr; }
void PropertyRow::give(ModelElement::Builder& builder, meta::Property const& property, Value const&) const {
    reportException(quay0::messages::NoSuchProperty(property->getName(), builder.getMetaClass()->getQualifiedName()));
}
void PropertyRow::build(ModelElement::Impl&, Cell const&) const {}
void PropertyRow::place(ModelElement::Impl&, ModelElement const&) const {}

PropertyRow const* ClassTable::rowAt(unsigned long index) const noexcept {
    for (ClassTable const* level = this; level != nullptr; level = level->base()) {
        if (index >= level->firstIndex_) {
            unsigned long const slot = index - level->firstIndex_;
            // Derived rows stand behind the indexed ones and have no index.
            return slot < level->rows_.size() && level->rows_[slot]->index() == index ? level->rows_[slot] : nullptr;
        }
    }
    return nullptr;
}

PropertyRow const* ClassTable::rowOf(meta::Property const& property) const noexcept {
    if (property.impl() == nullptr || !property) return nullptr;
    for (ClassTable const* level = this; level != nullptr; level = level->base()) {
        if (level == property->declaringTable()) return property->row();
    }
    return nullptr;
}

std::uint16_t ClassTable::highestIndex() const noexcept {
    for (ClassTable const* level = this; level != nullptr; level = level->base()) {
        for (std::size_t i = level->rows_.size(); i-- > 0;) {
            if (level->rows_[i]->index() != 0) return level->rows_[i]->index();
        }
    }
    return 0;
}

bool ClassTable::conformsTo(ClassTable const& other) const noexcept {
    for (ClassTable const* level = this; level != nullptr; level = level->base()) {
        if (level == &other) return true;
    }
    return false;
}

bool conformsTo(ModelElement const& element, ClassTable const& table) noexcept {
    return element.impl() != nullptr && element->classTable().conformsTo(table);
}

}  // namespace quay::zero
