#include "dump.h"

#include "node.h"

#include <keel/text.h>
#include <quay/zero/generic_collection.h>
#include <quay/zero/meta/types.h>

#include <boost/uuid/uuid_io.hpp>
#include <charconv>
#include <cstring>

namespace nodes {

using namespace quay::zero;

namespace {

unsigned numberOf(boost::uuids::uuid const& id) {
    unsigned number = 0;
    for (int i = 12; i < 16; ++i) number = (number << 8) | id.data[i];
    return number;
}

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

std::string showCollection(AbstractOwnedCollection const& collection, Names const& names) {
    List list;
    if (auto const* values = dynamic_cast<AbstractPrimitiveCollection const*>(&collection)) {
        for (Value const& v : values->getAllValues()) list.add(show(v, names));
        return list.close();
    }
    auto const& elements = dynamic_cast<ReferenceCollection const&>(collection);
    auto const members = elements.getAllValuesAndProxies();
    std::vector<Value> keys;
    if (auto const* keyed = dynamic_cast<GenericKeyedInterface const*>(elements.getGenericInterface())) {
        keys = keyed->genericKeys();
    }
    for (std::size_t i = 0; i < members.size(); ++i) {
        std::string const member = names.of(members[i].impl());
        list.add(i < keys.size() ? show(keys[i]) + ": " + member : member);
    }
    return list.close();
}

}  // namespace

std::string Names::of(boost::uuids::uuid const& id) const {
    static constexpr std::uint8_t zeros[12] = {};
    if (std::memcmp(id.data, zeros, sizeof zeros) == 0) return "#" + std::to_string(numberOf(id));
    auto const found = names_.find(id);
    return found == names_.end() ? boost::uuids::to_string(id) : found->second;
}

std::string Names::of(ModelElement::Impl const* element) const {
    if (element == nullptr) return "-";
    return (element->isAlive() ? "" : "+") + of(element->uuid());
}

// --- Values ---------------------------------------------------------------------------------------------------------

std::string show(bool value) { return value ? "true" : "false"; }
std::string show(int value) { return std::to_string(value); }
std::string show(double value) {
    char buffer[32];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}
std::string show(std::u16string const& value) { return show(keel::toUtf8(value)); }
std::string show(std::string const& value) { return '"' + value + '"'; }

std::string show(Value const& value, Names const& names) {
    using meta::StandardTypes;
    meta::Type const type = value.getType();
    if (type.impl() == nullptr) return "nothing";
    if (!value.isManaged()) return showCollection(*value.getCollection<AbstractOwnedCollection>(), names);
    if (!value.hasPayload()) return "none";
    if (type == StandardTypes::booleanMeta) return show(value.getValue<bool>());
    if (type == StandardTypes::integerMeta) return show(value.getValue<int>());
    if (type == StandardTypes::realMeta) return show(value.getValue<double>());
    if (type == StandardTypes::stringMeta) return show(value.getValue<std::u16string>());
    if (type == StandardTypes::stdstringMeta) return show(value.getValue<std::string>());
    if (type == nodeMeta().box) return show(value.getValue<Box>().sides[0]);
    if (meta::Class::cast(type).impl() != nullptr) return names.of(value.getValue<ModelElement>().impl());
    return "?";
}

std::string show(ModelElement::Impl const& element, std::size_t index, Names const& names) {
    meta::Property const& property = nodeMeta().properties[index];
    return show(element.getPropertyValue(property, ReflectionPrivateTag::NO_PROXY_RESOLVE), names);
}

// --- Models ---------------------------------------------------------------------------------------------------------

namespace {

/// Meta objects don't reflect themselves, so what they hold is asked one by one.
class MetaDump {
public:
    MetaDump(std::string& out, Names const& names) : out_(out), names_(names) {}

    void write(meta::MetaElement const& e) {
        put("name", show(e->getName()));
        if (auto const package = meta::Package::cast(e); package.impl() != nullptr) {
            put("uri", show(package->getUri()));
            put("imports", showCollection(*package->getImportedPackageURIs(), names_));
            put("types", showCollection(*package->getOwnedTypes(), names_));
            put("packages", showCollection(*package->getPackages(), names_));
        }
        if (auto const type = meta::Type::cast(e); type.impl() != nullptr) {
            put("script", show(type->getScriptName()));
            put("properties", showCollection(*type->getOwnedProperties(), names_));
        }
        if (auto const c = meta::Class::cast(e); c.impl() != nullptr) {
            put("abstract", show(c->isAbstract()));
            put("superclass", names_.of(c->superclass()));
            put("operations", showCollection(*c->getOwnedOperations(), names_));
        }
        if (auto const type = meta::Enum::cast(e); type.impl() != nullptr) {
            put("underlying", names_.of(type->getUnderlyingType().impl()));
            put("literals", showCollection(*type->getLiterals(), names_));
        }
        if (auto const literal = meta::EnumLiteral::cast(e); literal.impl() != nullptr) {
            put("value", show(literal->getValue()));
        }
        if (auto const typed = meta::TypedElement::cast(e); typed.impl() != nullptr) {
            put("type", names_.of(typed->type()));
            put("lower", show(typed->getLower()));
            put("upper", show(typed->getUpper()));
            put("ordered", show(typed->isOrdered()));
        }
        if (auto const property = meta::Property::cast(e); property.impl() != nullptr) {
            put("flags", show(static_cast<int>(property->getFlags())));
            put("composite", show(property->isComposite()));
            put("unique", show(property->isUnique()));
            put("derived", show(property->isDerived()));
            put("default", property->getDefaultValue() ? show(*property->getDefaultValue()) : "none");
            put("index", show(static_cast<int>(property->getIndex())));
            put("key", names_.of(property->getQualifiedBy().impl()));
            put("keyUnique", show(property->isQualificationUnique()));
        }
        if (auto const operation = meta::Operation::cast(e); operation.impl() != nullptr) {
            put("static", show(operation->isStatic()));
            put("public", show(operation->isPublic()));
            put("arguments", showCollection(*operation->getArguments(), names_));
        }
        if (auto const argument = meta::Argument::cast(e); argument.impl() != nullptr) {
            put("input", show(argument->isInput()));
        }
    }

private:
    void put(char const* name, std::string const& value) { out_ += std::string(" ") + name + "=" + value; }

    std::string& out_;
    Names const& names_;
};

void writeNode(std::string& out, ModelElement::Impl const& e, Names const& names) {
    auto const& properties = nodeMeta().properties;
    std::size_t const end = e.classTable().conformsTo(Special::classTable()) ? properties.size() : std::size_t{kNote};
    for (std::size_t i = 1; i < end; ++i) {
        out += ' ' + keel::toUtf8(properties[i]->getName()) + '=' + show(e, i, names);
    }
}

}  // namespace

std::string dump(Model const& model, DumpOptions options) {
    static Names const noNames;
    Names const& names = options.names == nullptr ? noNames : *options.names;
    std::string out;
    model->forEachElement([&](ModelElement::Impl& e) {
        auto const count = e.refCount();
        out += names.of(&e) + ' ' + keel::toUtf8(e.getMetaClass()->getName()) + (e.isProxy() ? " proxy" : "");
        if (e.containerImpl() != nullptr) {
            out += " in " + names.of(e.containerImpl()) + '.' + std::to_string(e.containmentIndex());
        }
        if (options.referenceCounts) out += " count=" + std::to_string(count);
        if (auto const object = meta::MetaElement::cast(ModelElement(&e)); object.impl() != nullptr) {
            MetaDump(out, names).write(object);
        } else {
            writeNode(out, e, names);
        }
        out += '\n';
    });
    out += model->inTransaction() ? "open" : "closed";
    out += ", undo " + std::to_string(model->undoDepth()) + ", redo " + std::to_string(model->redoDepth()) + '\n';
    return out;
}

}  // namespace nodes
