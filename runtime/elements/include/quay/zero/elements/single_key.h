// Shape "single" of a property that keys a map of its container.
#pragma once

#include <quay/zero/element_map.h>
#include <quay/zero/elements/single.h>
#include <quay/zero/report.h>
#include <quay/zero/text.h>

#include <quay0/messages.h>

#include <cmath>
#include <span>

namespace quay::zero::elements {

/// A map that the property keys: its owner's class and its index there. In a multimap keys needn't be unique.
struct KeyedMap {
    ClassTable::TableFunction owner;
    std::uint16_t index;
    bool unique;
};

/// While the element lies in such a map, writing the key takes it out, writes, and puts it back, in one savepoint. A
/// key in use there is UniquenessConstraint, before anything is opened; the element keeps its key and its place.
template <class K>
class SingleKey final : public Single<K> {
public:
    using Element = ModelElement::Impl;

    template <class X>
    constexpr SingleKey(std::uint16_t index, K X::*field, std::span<KeyedMap const> maps) noexcept
        : Single<K>(index, field), maps_(maps) {}

    using Single<K>::set;
    void set(Element& e, typename ValueDescriptor<K>::Passed value) const {
        e.requireWritable();
        if (isSameValue(this->read(e), value)) return;
        KeyedCore<K>* const map = containingMap(e);
        if (map == nullptr) {
            this->replace(e, value);
            return;
        }
        K const made(value);  // the value may be the very key that leaves the map
        refuseTaken(e, *map, made);
        Savepoint savepoint(e.model().journal());
        ModelElement const element(&e);
        map->basicRemove(element);
        this->replace(e, made);
        map->basicAdd(element);
        savepoint.commit();
    }
    void set(Element& e, meta::Property const& /*property*/, Value const& value,
             ReflectionPrivateTag const& /*tag*/) const override {
        set(e, value.getValue<K>());
    }

private:
    KeyedCore<K>* containingMap(Element& e) const {
        Element* const container = e.containerImpl();
        if (container == nullptr) return nullptr;
        for (KeyedMap const& map : maps_) {
            if (e.containmentIndex() != map.index || !container->classTable().conformsTo(map.owner())) continue;
            auto* const found =
                static_cast<KeyedCore<K>*>(container->classTable().descriptorAt(map.index)->collection(*container));
            found->prepareForReading();
            return found;
        }
        return nullptr;
    }

    void refuseTaken(Element& e, KeyedCore<K> const& map, K const& key) const {
        if constexpr (std::is_floating_point_v<K>) {
            if (std::isnan(key)) {
                reportException(quay0::messages::InvalidValue().about(e.nameOf(this->index())).withValue(textOf(key)));
            }
        }
        if (map.isUnique() && map.isTaken(key, nullptr)) {
            reportException(
                quay0::messages::UniquenessConstraint().about(e.nameOf(this->index())).withValue(textOf(key)));
        }
    }

    std::span<KeyedMap const> maps_;
};

}  // namespace quay::zero::elements
