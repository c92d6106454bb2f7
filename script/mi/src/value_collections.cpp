// Script protocol and methods of collections of values.
#include <ordo/class.h>
#include <ordo/error.h>

#include <quay/zero/mi/meta_marshaler_registry.h>
#include <quay/zero/primitive_collection.h>

#include <algorithm>

#include "collection_classes.h"
#include "methods.h"

namespace quay::zero::mi {

using ordo::CollectionKind;
using ordo::MethodCall;
using ordo::OrdoValue;

namespace {

AbstractPrimitiveCollection& collectionAt(void* native) {
    return static_cast<AbstractPrimitiveCollection&>(*static_cast<AbstractOwnedCollection*>(native));
}

ValueMarshaler& marshalerOf(AbstractPrimitiveCollection const& collection) {
    return MetaMarshalerRegistry::getInstance().getPropertyMarshaler(collection.getCollectionType());
}

Value neededValue(ValueMarshaler const& marshaler, OrdoValue const& given) {
    if (given.isNothing()) ordo::raiseWith(ordo::failures::NoValue, {"a value"});
    Value value = marshaler.fromScript(given);
    marshaler.requireContent(value);
    return value;
}

OrdoValue scriptOf(ValueMarshaler const& marshaler, Value const& value) {
    OrdoValue borrowed = marshaler.toScript(value);
    return OrdoValue(std::as_const(borrowed));
}

class SetProtocol : public ordo::OrdoCollection {
public:
    CollectionKind kind() const noexcept override { return CollectionKind::Set; }
    std::size_t size(void* native) const override { return collectionAt(native).size(); }
    std::vector<OrdoValue> members(void* native) const override {
        ValueMarshaler const& marshaler = marshalerOf(collectionAt(native));
        std::vector<OrdoValue> result;
        for (Value const& value : collectionAt(native).getAllValues()) result.push_back(scriptOf(marshaler, value));
        return result;
    }
    bool contains(void* native, OrdoValue const& value) const override {
        AbstractPrimitiveCollection const& collection = collectionAt(native);
        Value wanted;
        try {
            wanted = neededValue(marshalerOf(collection), value);
        } catch (keel::core::except::Error const&) {
            return false;
        }
        auto const values = collection.getAllValues();
        return std::find(values.begin(), values.end(), wanted) != values.end();
    }
};

class SequenceProtocol final : public SetProtocol {
public:
    CollectionKind kind() const noexcept override { return CollectionKind::Sequence; }
    OrdoValue at(void* native, std::size_t index) const override {
        AbstractPrimitiveCollection const& collection = collectionAt(native);
        return scriptOf(marshalerOf(collection), collection.getGenericInterface()->genericAt(index));
    }
};

SetProtocol const setProtocol;
SequenceProtocol const sequenceProtocol;

// --- Methods --------------------------------------------------------------------------------------------------------

AbstractPrimitiveCollection& selfOf(MethodCall const& call) {
    return static_cast<AbstractPrimitiveCollection&>(collectionOf(call.argument(0)));
}

Value valueOf(MethodCall const& call) { return neededValue(marshalerOf(selfOf(call)), call.argument(1)); }

GenericPrimitiveSequenceInterface& sequenceOf(MethodCall const& call) { return *selfOf(call).getGenericInterface(); }

void add(MethodCall& call) { selfOf(call).genericAdd(valueOf(call)); }
void remove(MethodCall& call) { selfOf(call).genericRemove(valueOf(call)); }
void clear(MethodCall& call) { selfOf(call).clear(); }

void insertAt(MethodCall& call) {
    Value const value = valueOf(call);
    sequenceOf(call).genericInsert(value, positionIn(call.argument(2), selfOf(call).size(), 1));
}
void removeAt(MethodCall& call) { sequenceOf(call).genericRemoveAt(positionIn(call.argument(1), selfOf(call).size())); }
void indexOf(MethodCall& call) {
    auto const position = sequenceOf(call).genericIndexOf(valueOf(call));
    bool const isNowhere = position == GenericPrimitiveSequenceInterface::NONE;
    call.setResult(OrdoValue::int64(isNowhere ? -1 : static_cast<std::int64_t>(position)));
}

}  // namespace

ordo::OrdoCollection const& valueSequenceProtocol = sequenceProtocol;
ordo::OrdoCollection const& valueSetProtocol = setProtocol;

void defineValueCollection(ordo::OrdoClass& c, std::string const& name) {
    addMethod(c, name, "add", "self value", {"any"}, "void", &add, "Takes a value in.");
    addMethod(c, name, "remove", "self value", {"any"}, "void", &remove, "Takes the first such value out.");
    addMethod(c, name, "clear", "self", {}, "void", &clear, "Takes all values out.");
}

void defineValueSequence(ordo::OrdoClass& c, std::string const& name) {
    defineValueCollection(c, name);
    addMethod(c, name, "insertAt", "self value position", {"any", "int64 scalar"}, "void", &insertAt,
              "Takes a value in before the one at a position.");
    addMethod(c, name, "removeAt", "self position", {"int64 scalar"}, "void", &removeAt,
              "Takes the value at a position out.");
    addMethod(c, name, "indexOf", "self value", {"any"}, "int64 scalar", &indexOf,
              "The first such value's position, or -1.");
}

}  // namespace quay::zero::mi
