#include "node_dump.h"

#include "node.h"

#include <quay/zero/meta/types.h>

namespace nodes {

using namespace quay::zero;

namespace {

std::string text(ModelElement const& e) { return nameOf(e); }
std::string text(AbstractOwnedCollection const& collection) { return show(collection); }
std::string text(boost::optional<std::u16string> const& value) { return value ? show(*value) : "none"; }
template <class T>
std::string text(T const& value) requires requires {
    meta::StandardTypes::of<T>();
}
{ return show(value); }

template <class... T>
std::string texts(T const&... values) {
    return ((text(values) + ' ') + ...);
}

/// Meta objects can't be read by reflection, so their values are read one by one.
std::string metaText(meta::MetaElement const& e) {
    std::string out = texts(e->getName());
    if (auto const p = meta::Package::cast(e)) {
        out += texts(p->getUri(), *p->getImportedPackageURIs(), *p->getOwnedTypes(), *p->getPackages());
    }
    if (auto const t = meta::Type::cast(e)) out += texts(t->getScriptName(), *t->getOwnedProperties());
    if (auto const c = meta::Class::cast(e)) {
        out += texts(c->isAbstract(), c->getSuperclass(), *c->getOwnedOperations());
    }
    if (auto const t = meta::Enum::cast(e)) out += texts(t->getUnderlyingType(), *t->getLiterals());
    if (auto const l = meta::EnumLiteral::cast(e)) out += texts(l->getValue());
    if (auto const t = meta::TypedElement::cast(e)) {
        out += texts(t->getType(), t->getLower(), t->getUpper(), t->isOrdered());
    }
    if (auto const p = meta::Property::cast(e)) {
        out += texts(static_cast<int>(p->getFlags()), p->isComposite(), p->isUnique(), p->isDerived(),
                     p->getDefaultValue(), static_cast<int>(p->getIndex()), p->getQualifiedBy(),
                     p->isQualificationUnique());
    }
    if (auto const o = meta::Operation::cast(e)) out += texts(o->isStatic(), o->isPublic(), *o->getArguments());
    if (auto const a = meta::Argument::cast(e)) out += texts(a->isInput());
    return out;
}

}  // namespace

std::string show(ModelElement::Impl const& element, std::size_t index) {
    return show(element.getPropertyValue(nodeMeta().properties[index], ReflectionPrivateTag::NO_PROXY_RESOLVE));
}

std::string dumpElements(Model const& model, DumpOptions options) {
    return records::dumpElements(model, [&](ModelElement::Impl& e) {
        std::string text = options.referenceCounts ? std::to_string(e.refCount()) + ' ' : "";
        meta::MetaElement const object = meta::MetaElement::cast(ModelElement(&e));
        return object ? text + metaText(object) : text;
    });
}

std::string dump(Model const& model, DumpOptions options) {
    return dumpElements(model, options) + records::dumpHistory(model);
}

}  // namespace nodes
