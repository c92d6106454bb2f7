// Script protocol and methods of collections of elements.
#include <ordo/class.h>
#include <ordo/error.h>

#include <quay/zero/generic_collection.h>
#include <quay/zero/mi/bindings.h>
#include <quay/zero/mi/meta_marshaler_registry.h>

#include "collection_classes.h"
#include "methods.h"
#include "script_names.h"

namespace quay::zero::mi {

using ordo::CollectionKind;
using ordo::MethodCall;
using ordo::OrdoValue;

namespace {

ReferenceCollection& collectionAt(void* native) {
    return static_cast<ReferenceCollection&>(*static_cast<AbstractOwnedCollection*>(native));
}

/// The generic interface of a collection, after its proxies have been resolved where the interface requires it.
template <class I>
I& interfaceOf(void* native) {
    collectionAt(native).prepareForReading();
    return static_cast<I&>(*collectionAt(native).getGenericInterface());
}

std::vector<OrdoValue> scriptsOf(std::vector<ModelElement> const& elements) {
    std::vector<OrdoValue> result;
    result.reserve(elements.size());
    for (ModelElement const& element : elements) result.push_back(toScript(element));
    return result;
}

/// The protocol of sets, and base of the other protocols: members are elements.
class SetProtocol : public ordo::OrdoCollection {
public:
    CollectionKind kind() const noexcept override { return CollectionKind::Set; }
    std::size_t size(void* native) const override {
        return interfaceOf<GenericCollectionInterface>(native).genericSize();
    }
    std::vector<OrdoValue> members(void* native) const override {
        return scriptsOf(collectionAt(native).getAllValues());
    }
    bool contains(void* native, OrdoValue const& value) const override {
        void* const element = value.native(elementClassName());
        return element != nullptr && interfaceOf<GenericCollectionInterface>(native).genericContains(
                                         ModelElement(static_cast<ModelElement::Impl*>(element)));
    }
};

class SequenceProtocol final : public SetProtocol {
public:
    CollectionKind kind() const noexcept override { return CollectionKind::Sequence; }
    OrdoValue at(void* native, std::size_t index) const override {
        return toScript(interfaceOf<GenericSequenceInterface>(native).genericAt(index));
    }
};

/// Maps and multimaps: `in` and look-up go by key.
template <class I>
class KeyedProtocol final : public SetProtocol {
    static constexpr bool kIsMap = std::is_same_v<I, GenericMapInterface>;

public:
    CollectionKind kind() const noexcept override { return kIsMap ? CollectionKind::Map : CollectionKind::Multimap; }
    bool contains(void* native, OrdoValue const& value) const override { return !found(native, value).empty(); }
    std::vector<OrdoValue> keys(void* native) const override {
        auto const& keyed = interfaceOf<I>(native);
        ValueMarshaler const& marshaler = marshalerOf(keyed);
        std::vector<OrdoValue> result;
        for (Value const& key : keyed.genericKeys()) {
            OrdoValue borrowed = marshaler.toScript(key);
            result.emplace_back(std::as_const(borrowed));
        }
        return result;
    }
    std::vector<OrdoValue> find(void* native, OrdoValue const& key) const override {
        return scriptsOf(found(native, key));
    }

private:
    static ValueMarshaler& marshalerOf(I const& keyed) {
        return MetaMarshalerRegistry::getInstance().getPropertyMarshaler(keyed.getQualifierType());
    }
    static std::vector<ModelElement> found(void* native, OrdoValue const& key) {
        auto const& keyed = interfaceOf<I>(native);
        Value value;
        try {
            value = marshalerOf(keyed).fromScript(key);
        } catch (keel::core::except::Error const&) {
            return {};  // a value of another type can't be a key
        }
        if constexpr (kIsMap) {
            ModelElement const one = keyed.genericGet(value);
            return one ? std::vector<ModelElement>{one} : std::vector<ModelElement>();
        } else {
            return keyed.genericGet(value);
        }
    }
};

SetProtocol const setProtocol;
SequenceProtocol const sequenceProtocol;
KeyedProtocol<GenericMapInterface> const mapProtocol;
KeyedProtocol<GenericMultimapInterface> const multimapProtocol;

// --- Methods --------------------------------------------------------------------------------------------------------

ReferenceCollection& selfOf(MethodCall const& call) {
    return static_cast<ReferenceCollection&>(collectionOf(call.argument(0)));
}

/// The element argument of a method. Throws if the argument is nothing.
ModelElement elementOf(MethodCall const& call) {
    if (call.argument(1).isEmpty()) ordo::raiseWith(ordo::failures::NoValue, {"an element"});
    return elementIn(call.argument(1));
}

GenericSequenceInterface& sequenceOf(MethodCall const& call) {
    return static_cast<GenericSequenceInterface&>(*selfOf(call).getGenericInterface());
}

void add(MethodCall& call) { selfOf(call).getGenericInterface()->genericAdd(elementOf(call)); }
void remove(MethodCall& call) { selfOf(call).getGenericInterface()->genericRemove(elementOf(call)); }
void clear(MethodCall& call) { selfOf(call).getGenericInterface()->genericClear(); }

void insertAt(MethodCall& call) {
    auto& sequence = sequenceOf(call);
    ModelElement const element = elementOf(call);
    sequence.genericInsertAt(element, positionIn(call.argument(2), sequence.genericSize(), 1));
}
void removeAt(MethodCall& call) {
    auto& sequence = sequenceOf(call);
    sequence.genericRemoveAt(positionIn(call.argument(1), sequence.genericSize()));
}
void indexOf(MethodCall& call) {
    auto const position = sequenceOf(call).genericIndexOf(elementOf(call));
    call.setResult(
        OrdoValue::int64(position == GenericCollectionInterface::NONE ? -1 : static_cast<std::int64_t>(position)));
}

}  // namespace

ordo::OrdoCollection const& elementSequenceProtocol = sequenceProtocol;
ordo::OrdoCollection const& elementSetProtocol = setProtocol;
ordo::OrdoCollection const& elementMapProtocol = mapProtocol;
ordo::OrdoCollection const& elementMultimapProtocol = multimapProtocol;

void defineElementCollection(ordo::OrdoClass& c, std::string const& name) {
    addMethod(c, name, "add", "self element", {names::kElement}, "void", &add,
              "Takes an element in, from wherever it is.");
    addMethod(c, name, "remove", "self element", {names::kElement}, "void", &remove,
              "Takes an element out; it lives on without a container.");
    addMethod(c, name, "clear", "self", {}, "void", &clear, "Takes all elements out.");
}

void defineElementSequence(ordo::OrdoClass& c, std::string const& name) {
    defineElementCollection(c, name);
    addMethod(c, name, "insertAt", "self element position", {names::kElement, "int64 scalar"}, "void", &insertAt,
              "Takes an element in before the one at a position.");
    addMethod(c, name, "removeAt", "self position", {"int64 scalar"}, "void", &removeAt,
              "Takes the element at a position out.");
    addMethod(c, name, "indexOf", "self element", {names::kElement}, "int64 scalar", &indexOf,
              "The element's position, or -1.");
}

}  // namespace quay::zero::mi
