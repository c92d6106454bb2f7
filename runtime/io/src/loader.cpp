#include "loader.h"

#include <quay/zero/property_descriptor.h>
#include <quay/zero/text.h>

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>

#include "failures.h"
#include "values.h"

namespace quay::zero::io {

namespace {

bool holdsElements(FieldForm const& property) noexcept { return property.value.kind == ValueForm::Kind::Element; }

[[noreturn]] void refuse(std::string const& wanted, Node const& found) {
    throw Refused("expected " + wanted + ", found " + describe(found));
}

/// Refuses a node and tells its text, if it has one.
[[noreturn]] void refuseText(std::string const& wanted, Node const& found) {
    if (found.text.empty()) refuse(wanted, found);
    throw Refused("expected " + wanted + ", found " + inQuotes(found.text));
}

void requireVersion(Node const& node) {
    if (!node.is(Node::Kind::Number) || node.text != "1") refuseText("version 1", node);
}

boost::uuids::uuid idOf(Node const& node) {
    std::optional<boost::uuids::uuid> const id = node.is(Node::Kind::Text) ? idFrom(node.text) : std::nullopt;
    if (!id || id->is_nil()) refuseText("an id", node);
    return *id;
}

void requireIdentity(ElementFrame const& element) {
    if (element.form == nullptr || element.id.is_nil()) {
        throw Refused("an element's 'class' and 'id' must come before its 'values'");
    }
}

}  // namespace

std::string Loader::place() const {
    std::string const result = refusedAt_.empty() ? pointerTo(frames_, begin_) : refusedAt_;
    return result.empty() ? "/" : result;
}

// --- Objects --------------------------------------------------------------------------------------------------------

Loader::Part Loader::beginObject() {
    if (!frames_.empty()) return std::visit([this](auto& frame) { return beginObjectIn(frame); }, frames_.back());
    frames_.emplace_back(DocumentFrame());
    return Part::Structure;
}

Loader::Part Loader::beginObjectIn(DocumentFrame const&) { throw Refused("expected no object here"); }

Loader::Part Loader::beginObjectIn(ElementsFrame& list) {
    ++list.count;
    return beginElement(list.owner);
}

Loader::Part Loader::beginObjectIn(ElementFrame& element) {
    if (!element.keys.isAt(ElementKey::Values)) throw Refused("expected no object here");
    requireIdentity(element);
    if (mayPostpone(element)) {
        postpone(element);
        return Part::Postponed;
    }
    element.element = maker_.make(*element.form, element.id);
    bool const isRoot = element.owner.property == nullptr;
    frames_.emplace_back(ValuesFrame{element.form, {element.element.impl(), nullptr, isRoot}, seen_.size()});
    return Part::Structure;
}

Loader::Part Loader::beginObjectIn(ValuesFrame const& values) {
    if (!holdsElements(*values.current.property)) return Part::Value;
    if (values.current.property->isSeveral) throw Refused("expected a list of elements, found an object");
    return beginElement(values.current);
}

Loader::Part Loader::beginElement(Owner const& owner) {
    if (++elements_ > limits_.count) {
        throw Refused("there are more than the " + std::to_string(limits_.count) + " elements that are allowed");
    }
    frames_.emplace_back(ElementFrame{owner});
    return Part::Structure;
}

// --- Lists ----------------------------------------------------------------------------------------------------------

Loader::Part Loader::beginList() {
    if (frames_.empty()) throw Refused("expected an object, found a list");
    return std::visit([this](auto& frame) { return beginListIn(frame); }, frames_.back());
}

Loader::Part Loader::beginListIn(DocumentFrame const& document) {
    if (!document.keys.isAt(DocumentKey::Roots)) throw Refused("expected no list here");
    frames_.emplace_back(ElementsFrame());
    return Part::Structure;
}

Loader::Part Loader::beginListIn(ElementsFrame const&) { throw Refused("expected no list here"); }

Loader::Part Loader::beginListIn(ElementFrame const&) { throw Refused("expected no list here"); }

Loader::Part Loader::beginListIn(ValuesFrame const& values) {
    if (!holdsElements(*values.current.property)) return Part::Value;
    if (!values.current.property->isSeveral) throw Refused("expected an element, found a list");
    frames_.emplace_back(ElementsFrame{values.current});
    return Part::Structure;
}

// --- Ends -----------------------------------------------------------------------------------------------------------

void Loader::end() {
    std::visit([this](auto& frame) { finish(frame); }, frames_.back());
    frames_.pop_back();
}

void Loader::finish(ElementsFrame const&) {}

void Loader::finish(ValuesFrame const& values) { seen_.resize(values.firstSeen); }

// --- Keys -----------------------------------------------------------------------------------------------------------

void Loader::key(std::string_view name, std::optional<std::uint64_t> end) {
    keyEnd_ = end;
    if (auto* const values = std::get_if<ValuesFrame>(&frames_.back())) {
        keyIn(*values, name);
    } else if (auto* const element = std::get_if<ElementFrame>(&frames_.back())) {
        element->keys.add(name);
    } else {
        std::get<DocumentFrame>(frames_.back()).keys.add(name);
    }
}

void Loader::keyIn(ValuesFrame& values, std::string_view name) {
    FieldForm const* const property = values.form->find(name);
    if (property == nullptr) throw Refused(inQuotes(values.form->name) + " has no stored property " + inQuotes(name));
    values.current.property = property;
    auto const begin = seen_.begin() + static_cast<std::ptrdiff_t>(values.firstSeen);
    if (std::find(begin, seen_.end(), property) != seen_.end()) {
        throw Refused("the property " + inQuotes(name) + " stands twice");
    }
    seen_.push_back(property);
}

// --- Values ---------------------------------------------------------------------------------------------------------

void Loader::value(Node const& node) {
    if (frames_.empty()) refuse("an object", node);
    std::visit([&](auto& frame) { valueIn(frame, node); }, frames_.back());
}

void Loader::valueIn(DocumentFrame& document, Node const& node) {
    switch (*document.keys.last()) {
        case DocumentKey::Roots:
            refuse("a list of elements", node);
        case DocumentKey::Schema:
            if (!node.is(Node::Kind::Text)) refuse("a text", node);
            document.schema = node.text;
            break;
        case DocumentKey::Version:
            requireVersion(node);
            break;
    }
}

void Loader::valueIn(ElementsFrame const&, Node const& node) { refuse("an element", node); }

void Loader::valueIn(ElementFrame& element, Node const& node) {
    switch (*element.keys.last()) {
        case ElementKey::Class:
            takeClass(element, node);
            break;
        case ElementKey::Id:
        case ElementKey::Ref:
            element.id = idOf(node);
            break;
        case ElementKey::Values:
            refuse("an object of properties", node);
    }
}

void Loader::valueIn(ValuesFrame const& values, Node const& node) {
    if (holdsElements(*values.current.property)) refuse("an element", node);
    storeProperty(*values.current.element, *values.current.property, node);
}

// --- Elements -------------------------------------------------------------------------------------------------------

void Loader::takeClass(ElementFrame& element, Node const& node) {
    if (!node.is(Node::Kind::Text)) refuse("a class", node);
    element.form = forms_.find(node.text);
    if (element.form == nullptr) throw Refused("there is no class " + inQuotes(node.text));
    if (element.owner.property == nullptr) return;
    auto const wanted = meta::Class::cast(element.owner.property->value.type);
    if (!element.form->type->conformsTo(wanted)) {
        throw Refused("an element of " + inQuotes(element.form->name) + " can't stand where one of " +
                      quotedName(wanted) + " is wanted");
    }
}

void Loader::finish(ElementFrame& element) {
    element.keys.finish();  // a failure from here on concerns the element as a whole
    if (element.keys.has(ElementKey::Ref)) {
        element.element = makeReference(element);
    } else if (!element.element) {
        requireIdentity(element);
        element.element = maker_.make(*element.form, element.id);
    }
    if (FieldForm const* const property = element.owner.property) {
        property->property->descriptor()->place(*element.owner.element, element.element);
    } else {
        roots_.push_back(std::move(element.element));
    }
}

ModelElement Loader::makeReference(ElementFrame const& element) {
    if (!element.keys.areJust(ElementKey::Class, ElementKey::Ref)) {
        throw Refused("a reference has a 'class' and a 'ref' and nothing else");
    }
    if (element.owner.property == nullptr) throw Refused("a root can't be a reference");
    return maker_.makeReference(*element.form, element.id, place());
}

// --- The document ---------------------------------------------------------------------------------------------------

void Loader::finish(DocumentFrame const& document) {
    for (DocumentKey const key : {DocumentKey::Roots, DocumentKey::Schema, DocumentKey::Version}) {
        if (!document.keys.has(key)) throw Refused("there is no " + inQuotes(nameOf(key)));
    }
    // While children are postponed, a reference may be to an element that is read later.
    if (!keep_) maker_.checkReferences(refusedAt_);
    if (roots_.empty()) return;
    std::string const wanted = schemaOf(roots_.front()->getMetaClass());
    if (document.schema != wanted) {
        throw Refused("the schema is " + inQuotes(document.schema) + ", and that of the classes here is " +
                      inQuotes(wanted));
    }
}

// --- Postponed elements ---------------------------------------------------------------------------------------------

void Loader::postponeChildren(std::u16string store, Keep keep) {
    store_ = std::move(store);
    keep_ = std::move(keep);
}

/// Whether a root owns the element, and it is known where its values begin. Members of a multimap aren't postponed,
/// since a multimap keeps the order of those that have the same key, and a proxy has no key.
bool Loader::mayPostpone(ElementFrame const& element) const noexcept {
    return keep_ && keyEnd_ && element.owner.isRoot &&
           element.owner.property->property->getFlags() != ValueFlags::Multimap;
}

void Loader::postpone(ElementFrame& element) {
    maker_.requireNew(*element.form, element.id);
    if (!keep_(element.id, {*keyEnd_, element.form->type})) refuseSecondId();
    element.element = maker_.makePostponed(*element.form, ProxyId(store_, element.id));
}

void Loader::beginPostponed(meta::Class const& type, boost::uuids::uuid const& id, std::size_t before) {
    begin_ = "element " + to_string(id);
    elements_ = before;
    ElementFrame element;
    element.form = &forms_.of(type);
    element.id = id;
    element.keys.add(nameOf(ElementKey::Values));
    frames_.emplace_back(std::move(element));
}

void Loader::finishPostponed() { finish(std::get<ElementFrame>(frames_.back())); }

}  // namespace quay::zero::io
