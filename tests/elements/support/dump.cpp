#include "dump.h"

#include <keel/text.h>
#include <quay/zero/generic_collection.h>
#include <quay/zero/meta/serializers.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/primitive_collection.h>
#include <zx/zx.h>

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>
#include <cstring>

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

bool isText(meta::Type const& type) {
    return type == meta::StandardTypes::stringMeta || type == meta::StandardTypes::stdstringMeta;
}

std::string showArray(zxArray_tag const* array) {
    if (array == nullptr) return "null";
    return "array " + (zxIsEmpty(array) ? "empty" : std::to_string(zxGetNumber(array)));
}

}  // namespace

std::string show(boost::uuids::uuid const& id) {
    static constexpr std::uint8_t zeros[12] = {};
    if (std::memcmp(id.data, zeros, sizeof zeros) != 0) return boost::uuids::to_string(id);
    unsigned number = 0;
    for (int i = 12; i < 16; ++i) number = (number << 8) | id.data[i];
    return "#" + std::to_string(number);
}

std::string nameOf(ModelElement const& e) {
    if (e.impl() == nullptr) return "-";
    return (e ? "" : "+") + show(e->uuid());
}

std::string show(AbstractOwnedCollection const& collection) {
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
        list.add(i < keys.size() ? show(keys[i]) + ": " + nameOf(members[i]) : nameOf(members[i]));
    }
    return list.close();
}

std::string show(Value const& value) {
    meta::Type const type = value.getType();
    if (type.impl() == nullptr) return "nothing";
    if (value.pointsAtCollection()) return show(*value.getCollection<AbstractOwnedCollection>());
    if (!value.hasPayload()) return "none";
    if (type == meta::StandardTypes::zxArrayMeta) return showArray(value.getValue<zxArray_tag*>());
    if (meta::Class::cast(type).impl() != nullptr) return nameOf(value.getValue<ModelElement>());
    auto const* const serializers = meta::PropertySerializerRegistry::getInstance();
    if (auto const* const fields = serializers->getDatatypeSerializer(type)) {
        List list;
        for (meta::Property const& field : *type->getOwnedProperties())
            list.add(show(fields->getPropertyValue(value, field)));
        return list.close();
    }
    std::string const text = keel::toUtf8(serializers->getPropertySerializer(type)->serializeValue(value));
    return isText(type) ? '"' + text + '"' : text;
}

std::string show(ModelElement const& element) {
    std::string out;
    for (meta::Property const& p : element->getMetaClass()->getProperties()) {
        if (!element->hasPropertyValue(p, ReflectionPrivateTag::NO_PROXY_RESOLVE)) continue;
        std::string const value = show(element->getPropertyValue(p, ReflectionPrivateTag::NO_PROXY_RESOLVE));
        bool const zero = value == (isText(p->getType()) ? "\"\"" : "0") || value == "false";
        if (!zero || p->getFlags() != ValueFlags::One) out += ' ' + keel::toUtf8(p->getName()) + '=' + value;
    }
    return out;
}

std::string dumpElements(Model const& model, std::function<std::string(ModelElement::Impl&)> const& more) {
    std::string out;
    model->forEachElement([&](ModelElement::Impl& e) {
        if (more) out += more(e);
        ModelElement const element(&e);
        out += nameOf(element) + ' ' + keel::toUtf8(e.getMetaClass()->getName()) + (e.isProxy() ? " proxy" : "");
        if (ModelElement const container = e.basicContainer(); container.impl() != nullptr) {
            out += " in " + nameOf(container) + '.' + std::to_string(e.containmentIndex());
        }
        out += show(element) + '\n';
    });
    return out;
}

std::string dumpHistory(Model const& model) {
    return (model->inTransaction() ? "open, undo " : "closed, undo ") + std::to_string(model->undoDepth()) + ", redo " +
           std::to_string(model->redoDepth()) + '\n';
}

std::string dump(Model const& model) { return dumpElements(model) + dumpHistory(model); }

}  // namespace records
