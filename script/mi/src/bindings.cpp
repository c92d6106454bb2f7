#include <quay/zero/mi/bindings.h>

#include <ordo/error.h>
#include <ordo/factory/binding_registry.h>

#include <quay/zero/generic_collection.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/primitive_collection.h>

#include <zx/containers.h>

#include <boost/unordered/unordered_flat_map.hpp>

#include "script_names.h"

namespace quay::zero::mi {

using ordo::InternedName;
using ordo::OrdoValue;
using ordo::factory::basic::BindingRegistry;

namespace {

/// What one binding keeps alive: the element, or the collection's owner, and the model, without which they would be
/// dead.
struct Held {
    CountedHandle object;
    Model model;
};

boost::unordered_flat_map<void const*, Held>& held() {
    static auto* const all = new boost::unordered_flat_map<void const*, Held>;
    return *all;
}

void hold(void const* native, ModelElement const& element) {
    held().try_emplace(native, Held{element, element->getModel()});
}

/// The class of a collection of elements: the first interface that the collection has decides.
char const* classOf(ReferenceCollection const& collection) {
    GenericCollectionInterface const* const generic = collection.getGenericInterface();
    if (generic == nullptr) return names::kSet;
    if (generic->isSequenceInterface()) return names::kSequence;
    if (generic->isMapInterface()) return names::kMap;
    return generic->isMultimapInterface() ? names::kMultimap : names::kSet;
}

InternedName classNameOf(AbstractOwnedCollection const& collection) {
    static InternedName const primitiveSequence = ordo::internName(names::kPrimitiveSequence);
    static InternedName const primitiveSet = ordo::internName(names::kPrimitiveSet);
    if (auto const* const elements = dynamic_cast<ReferenceCollection const*>(&collection)) {
        return ordo::internName(classOf(*elements));
    }
    // Collections of values by key have a script class as well, but no property here has that kind.
    bool const isSequence = static_cast<AbstractPrimitiveCollection const&>(collection).getKind() ==
                            AbstractPrimitiveCollection::Kind::Sequence;
    return isSequence ? primitiveSequence : primitiveSet;
}

}  // namespace

InternedName scriptNameOf(meta::Class const& metaClass) {
    // Meta objects are never deleted, so an address identifies the same class for the rest of the process.
    static auto* const known = new boost::unordered_flat_map<void const*, InternedName>;
    auto const [place, isNew] = known->try_emplace(metaClass.ModelElement::impl());
    if (isNew) {
        std::string const& own = metaClass->getScriptName();
        place->second =
            ordo::internName(own.empty() ? meta::MetaRegistry::getInstance()->getTypeNames(metaClass).script : own);
    }
    return place->second;
}

InternedName elementClassName() noexcept {
    static InternedName const name = ordo::internName(names::kElement);
    return name;
}

OrdoValue toScript(ModelElement const& element) {
    if (element.impl() == nullptr) return {};
    bool isNew = false;
    auto object =
        BindingRegistry::announce(static_cast<void*>(element.impl()), scriptNameOf(element->getMetaClass()), isNew);
    if (isNew) hold(element.impl(), element);
    return OrdoValue::fromObject(std::move(object));
}

OrdoValue toScript(AbstractOwnedCollection const& collection) {
    bool isNew = false;
    void const* const native = &collection;
    auto object = BindingRegistry::announce(native, classNameOf(collection), isNew);
    if (isNew && collection.owner() != nullptr) hold(native, ModelElement(collection.owner()));
    return OrdoValue::fromObject(std::move(object));
}

OrdoValue toScript(Model const& model) {
    if (model.impl() == nullptr) return {};
    static InternedName const name = ordo::internName(names::kModel);
    bool isNew = false;
    auto object = BindingRegistry::announce(static_cast<void*>(model.impl()), name, isNew);
    if (isNew) held().try_emplace(model.impl(), Held{model, model});
    return OrdoValue::fromObject(std::move(object));
}

OrdoValue toScript(std::vector<ModelElement> const& elements) {
    zx::Array cells(zxCreateCellMatrix(elements.empty() ? 0 : 1, elements.size()));
    for (std::size_t i = 0; i < elements.size(); ++i) {
        zxSetCell(cells.get(), i, toScript(elements[i]).toArray().release());
    }
    return OrdoValue::fromArray(std::move(cells));
}

ModelElement elementIn(OrdoValue const& value) {
    if (value.isEmpty()) return {};
    void* const native = value.count() == 1 ? value.native(elementClassName()) : nullptr;
    if (native == nullptr) ordo::raiseWith(ordo::failures::WrongType, {value.describe(), "an element"});
    return ModelElement(static_cast<ModelElement::Impl*>(native));
}

Model modelIn(OrdoValue const& value) {
    static InternedName const name = ordo::internName(names::kModel);
    return Model(static_cast<ModelImpl*>(value.native(name)));
}

Model liveModelIn(OrdoValue const& value) {
    Model model = modelIn(value);
    if (!model) ordo::raiseInvalidHandle();
    return model;
}

void bindConstructed(ModelElement const& element, ordo::OrdoInterface& scriptObject) {
    BindingRegistry::announceForConstructor(element.impl(), scriptNameOf(element->getMetaClass()), scriptObject, true);
    hold(element.impl(), element);
}

void bindConstructed(Model const& model, ordo::OrdoInterface& scriptObject) {
    BindingRegistry::announceForConstructor(model.impl(), ordo::internName(names::kModel), scriptObject, true);
    held().try_emplace(model.impl(), Held{model, model});
}

void releaseHeld(void const* native) noexcept {
    auto const found = held().find(native);
    if (found == held().end()) return;
    // Remove the entry from the table first: releasing the last reference may call this function again.
    Held const last = std::move(found->second);
    held().erase(found);
}

}  // namespace quay::zero::mi
