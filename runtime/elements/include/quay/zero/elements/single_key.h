// Shape "single" of a property by which a map of the container is keyed.
#pragma once

#include <quay/zero/element_map.h>
#include <quay/zero/elements/single.h>
#include <quay/zero/report.h>
#include <quay/zero/text.h>

#include <quay0/messages.h>

#include <cmath>
#include <span>

namespace quay::zero::elements {

/// A map that is keyed by the property: the class of its owner and its index there. A multimap isn't `unique`.
struct KeyedMap {
    ClassTable::TableFunction owner;
    std::uint16_t index;
    bool unique;
};

/// While the element is a member of such a map, writing the key removes the element, writes, and adds it again, in one
/// savepoint. If the key is in use there, raises UniquenessConstraint before anything changes.
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
        K const made(value);  // `value` may refer to the key in the map, which is removed
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
