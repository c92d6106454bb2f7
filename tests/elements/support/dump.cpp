#include "dump.h"

#include <keel/text.h>
#include <quay/zero/generic_collection.h>
#include <quay/zero/meta/serializers.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/primitive_collection.h>
#include <zx/zx.h>

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>

namespace records {

using namespace quay::zero;

namespace {

/// "[a, b, c]"
class List {
public:
    void add(std::string const& item) {
        if (text_.size() > 1) text_ += ", ";
        text_ += item;
    }
    std::string close() { return text_ += ']'; }

private:
    std::string text_ = "[";
};

std::string showElement(ModelElement const& e) {
    if (e.impl() == nullptr) return "-";
    return (e ? "" : "dead ") + boost::uuids::to_string(e->uuid());
}

std::string showArray(zxArray_tag const* array) {
    if (array == nullptr) return "null";
    return "array " + (zxIsEmpty(array) ? "empty" : std::to_string(zxGetNumber(array)));
}

std::string showCollection(AbstractOwnedCollection const& collection) {
    List list;
    if (auto const* values = dynamic_cast<AbstractPrimitiveCollection const*>(&collection)) {
        for (Value const& v : values->getAllValues()) list.add(show(v));
        return list.close();
    }
    auto const& elements = dynamic_cast<ReferenceCollection const&>(collection);
    auto members = elements.getAllValuesAndProxies();
    std::vector<Value> keys;
    if (auto const* keyed = dynamic_cast<GenericKeyedInterface const*>(elements.getGenericInterface())) {
        keys = keyed->genericKeys();
    } else if (!elements.getGenericInterface()->isSequenceInterface()) {
        std::sort(members.begin(), members.end(),
                  [](ModelElement const& a, ModelElement const& b) { return a->uuid() < b->uuid(); });
    }
    for (std::size_t i = 0; i < members.size(); ++i) {
        list.add(i < keys.size() ? show(keys[i]) + ": " + showElement(members[i]) : showElement(members[i]));
    }
    return list.close();
}

}  // namespace

std::string show(Value const& value) {
    meta::Type const type = value.getType();
    if (type.impl() == nullptr) return "nothing";
    if (value.pointsAtCollection()) return showCollection(*value.getCollection<AbstractOwnedCollection>());
    if (!value.hasPayload()) return "none";
    if (type == meta::StandardTypes::zxArrayMeta) return showArray(value.getValue<zxArray_tag*>());
    if (meta::Class::cast(type).impl() != nullptr) return showElement(value.getValue<ModelElement>());
    auto const* const serializers = meta::PropertySerializerRegistry::getInstance();
    if (auto const* const fields = serializers->getDatatypeSerializer(type)) {
        List list;
        for (meta::Property const& field : *type->getOwnedProperties())
            list.add(show(fields->getPropertyValue(value, field)));
        return list.close();
    }
    return keel::toUtf8(serializers->getPropertySerializer(type)->serializeValue(value));
}

std::string show(ModelElement const& element) {
    std::string out;
    for (meta::Property const& p : element->getMetaClass()->getProperties()) {
        if (!element->hasPropertyValue(p, ReflectionPrivateTag::NO_PROXY_RESOLVE)) continue;
        std::string const value = show(element->getPropertyValue(p, ReflectionPrivateTag::NO_PROXY_RESOLVE));
        bool const text =
            p->getType() == meta::StandardTypes::stringMeta || p->getType() == meta::StandardTypes::stdstringMeta;
        bool const zero = text ? value.empty() : value == "0" || value == "false";
        if (!zero || p->getFlags() != ValueFlags::One) out += ' ' + keel::toUtf8(p->getName()) + '=' + value;
    }
    return out;
}

std::string dumpElements(Model const& model) {
    std::string out;
    model->forEachElement([&](ModelElement::Impl& e) {
        ModelElement const element(&e);
        out += showElement(element) + ' ' + keel::toUtf8(e.getMetaClass()->getName()) + (e.isProxy() ? " proxy" : "");
        if (ModelElement const container = e.basicContainer(); container.impl() != nullptr) {
            out += " in " + showElement(container) + '.' + keel::toUtf8(e.containmentFeature()->getName());
        }
        out += show(element) + '\n';
    });
    return out;
}

std::string dump(Model const& model) {
    return dumpElements(model) + (model->inTransaction() ? "open" : "closed") + ", undo " +
           std::to_string(model->undoDepth()) + ", redo " + std::to_string(model->redoDepth()) + '\n';
}

}  // namespace records
