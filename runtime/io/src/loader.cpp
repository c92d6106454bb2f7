#include "loader.h"

#include <keel/text.h>
#include <quay/zero/builder.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/text.h>

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>
#include <functional>

#include "failures.h"
#include "scalars.h"
#include "values.h"

namespace quay::zero::io {

namespace {

/// In an object that is a property's value, where each new key is compared with those before it.
constexpr std::size_t kMostKeys = 256;

constexpr std::string_view kKeyNames[] = {"", "roots", "schema", "version", "class", "id", "ref", "values"};

}  // namespace

std::string Loader::place() const {
    if (!refusedAt_.empty()) return refusedAt_;
    std::string result = begin_;
    for (Frame const& frame : frames_) {
        switch (frame.state) {
            case State::Document:
            case State::Element:
                if (frame.key != Key::None) result.append("/").append(kKeyNames[static_cast<int>(frame.key)]);
                break;
            case State::Values:
                if (frame.property != nullptr) result.append("/").append(frame.property->name);
                break;
            case State::Roots:
            case State::Children:
                if (frame.count > 0) result.append("/").append(std::to_string(frame.count - 1));
                break;
        }
    }
    return result.empty() ? "/" : result;
}

// --- Tokens ---------------------------------------------------------------------------------------------------------

bool Loader::gather(string_view part) {
    parts_.append(part.data(), part.size());
    return true;
}

/// The token that ends with `part`; good until the next one.
std::string_view Loader::whole(string_view part) {
    if (parts_.empty()) return {part.data(), part.size()};
    gather(part);
    scalar_.text.swap(parts_);
    parts_.clear();
    return scalar_.text;
}

/// A key that has escapes, or lies across two pieces, is told from a copy, whose address says nothing.
void Loader::noteEnd(string_view part) noexcept {
    std::less_equal<> const notAfter;
    bool const isHere = notAfter(piece_.data(), part.data()) &&
                        notAfter(part.data() + part.size(), piece_.data() + piece_.size()) && !piece_.empty();
    keyEnd_ = isHere ? pieceOffset_ + static_cast<std::uint64_t>(part.data() + part.size() - piece_.data()) : 0;
}

bool Loader::scalar(Node::Kind kind, std::string_view text) {
    if (isSkipping()) return true;
    scalar_.kind = kind;
    if (text.data() != scalar_.text.data()) scalar_.text.assign(text);
    if (isCollecting()) {
        Node& node = addNode();
        node.kind = kind;
        node.truth = scalar_.truth;
        node.text = scalar_.text;
    } else {
        takeScalar();
    }
    return true;
}

void Loader::takeScalar() {
    if (frames_.empty()) throw Refused(std::string("expected an object, found ") + describe(scalar_));
    Frame& frame = frames_.back();
    switch (frame.key) {
        case Key::Class:
            return takeClass(frame);
        case Key::Id:
        case Key::Ref:
            return takeId(frame);
        case Key::Schema:
            return takeSchema();
        case Key::Version:
            return takeVersion();
        case Key::Roots:
            throw Refused(std::string("expected a list of elements, found ") + describe(scalar_));
        case Key::Values:
            throw Refused(std::string("expected an object of properties, found ") + describe(scalar_));
        case Key::None:
            break;
    }
    if (frame.state != State::Values || frame.property->value.kind == ValueForm::Kind::Element) {
        throw Refused(std::string("expected an element, found ") + describe(scalar_));
    }
    storeProperty(*frame.element, *frame.property, scalar_);
}

void Loader::beginObject() {
    if (isSkipping()) {
        ++skipped_;
        return;
    }
    if (isCollecting()) return beginNode(Node::Kind::Object);
    if (frames_.empty()) {
        frames_.push_back({State::Document});
        return;
    }
    Frame& frame = frames_.back();
    if (frame.state == State::Element && frame.key == Key::Values && mayPostpone()) {
        requireIdentity(frame);
        frame.isPostponed = true;
        keep_(frame.id, {keyEnd_ + 1, frame.form->type});
        skipped_ = 1;
    } else if (frame.state == State::Element && frame.key == Key::Values) {
        make(frame);
        Frame values{State::Values};
        values.form = frame.form;
        values.element = frame.element;
        values.count = seen_.size();
        frames_.push_back(values);
    } else if (frame.state == State::Values && frame.property->value.kind != ValueForm::Kind::Element) {
        beginNode(Node::Kind::Object);
    } else if (frame.state == State::Values && frame.property->isSeveral) {
        throw Refused("expected a list of elements, found an object");
    } else if (frame.key != Key::None) {
        throw Refused("expected no object here");
    } else {
        beginElement();
    }
}

void Loader::endObject() {
    if (isSkipping()) {
        --skipped_;
        return;
    }
    if (isCollecting()) return endNode();
    State const state = frames_.back().state;
    if (state == State::Element) finishElement();
    if (state == State::Document) finishDocument();
    if (state == State::Values) seen_.resize(frames_.back().count);
    frames_.pop_back();
}

void Loader::beginList() {
    if (isSkipping()) {
        ++skipped_;
        return;
    }
    if (isCollecting()) return beginNode(Node::Kind::List);
    if (frames_.empty()) throw Refused("expected an object, found a list");
    Frame const& frame = frames_.back();
    bool const isProperty = frame.state == State::Values;
    bool const isElements = isProperty && frame.property->value.kind == ValueForm::Kind::Element;
    if (isProperty && !isElements) return beginNode(Node::Kind::List);
    Frame list{State::Roots};
    if (isElements && frame.property->isSeveral) {
        list = Frame{State::Children};
        list.property = frame.property;
    } else if (frame.key != Key::Roots) {
        throw Refused(isProperty ? "expected an element, found a list" : "expected no list here");
    }
    frames_.push_back(list);
}

void Loader::endList() {
    if (isSkipping()) {
        --skipped_;
        return;
    }
    if (isCollecting()) return endNode();
    frames_.pop_back();
}

// --- Keys -----------------------------------------------------------------------------------------------------------

void Loader::key(std::string_view name) {
    if (isSkipping()) return;
    if (isCollecting()) {
        Node& object = *open_.back();
        if (object.keys.size() == kMostKeys) {
            throw Refused("a value has more than the " + std::to_string(kMostKeys) + " keys that are allowed");
        }
        if (object.find(name) != nullptr) throw Refused("the key " + inQuotes(name) + " stands twice");
        object.keys.emplace_back(name);
        return;
    }
    Frame& frame = frames_.back();
    frame.state == State::Values ? propertyKey(frame, name) : structureKey(frame, name);
}

void Loader::structureKey(Frame& frame, std::string_view name) {
    bool const isDocument = frame.state == State::Document;
    int const first = static_cast<int>(isDocument ? Key::Roots : Key::Class);
    int const last = static_cast<int>(isDocument ? Key::Version : Key::Values);
    frame.key = Key::None;
    for (int key = first; key <= last; ++key) {
        if (kKeyNames[key] != name) continue;
        if ((frame.given >> key & 1U) != 0) throw Refused("the key " + inQuotes(name) + " stands twice");
        frame.given |= 1U << key;
        frame.key = static_cast<Key>(key);
        return;
    }
    throw Refused("the key " + inQuotes(name) + " isn't known here");
}

void Loader::propertyKey(Frame& frame, std::string_view name) {
    FieldForm const* const property = frame.form->find(name);
    if (property == nullptr) throw Refused(inQuotes(frame.form->name) + " has no stored property " + inQuotes(name));
    frame.property = property;
    auto const begin = seen_.begin() + static_cast<std::ptrdiff_t>(frame.count);
    if (std::find(begin, seen_.end(), property) != seen_.end()) {
        throw Refused("the property " + inQuotes(name) + " stands twice");
    }
    seen_.push_back(property);
}

// --- The document ---------------------------------------------------------------------------------------------------

void Loader::takeVersion() {
    if (!scalar_.is(Node::Kind::Number) || scalar_.text != "1") {
        throw Refused("expected version 1, found " +
                      (scalar_.text.empty() ? describe(scalar_) : inQuotes(scalar_.text)));
    }
}

void Loader::takeSchema() {
    if (!scalar_.is(Node::Kind::Text)) throw Refused(std::string("expected a text, found ") + describe(scalar_));
    schema_ = scalar_.text;
}

void Loader::finishDocument() {
    for (Key const key : {Key::Roots, Key::Schema, Key::Version}) {
        if ((frames_.back().given >> static_cast<int>(key) & 1U) == 0) {
            throw Refused("there is no " + inQuotes(kKeyNames[static_cast<int>(key)]));
        }
    }
    checkReferences();
    if (roots_.empty()) return;
    std::string const wanted = schemaOf(roots_.front()->getMetaClass());
    if (schema_ != wanted) {
        throw Refused("the schema is " + inQuotes(schema_) + ", and that of the classes here is " + inQuotes(wanted));
    }
}

// --- Elements -------------------------------------------------------------------------------------------------------

/// The frame of the values that the element being read stands in, and the property; a root has none.
Loader::Frame const& Loader::owningFrame() const noexcept {
    Frame const& above = frames_[frames_.size() - 2];
    return above.state == State::Children ? frames_[frames_.size() - 3] : above;
}

FieldForm const* Loader::owningProperty() const noexcept {
    return frames_[frames_.size() - 2].state == State::Roots ? nullptr : owningFrame().property;
}

void Loader::beginElement() {
    Frame& above = frames_.back();
    if (above.state != State::Values) ++above.count;
    if (++elements_ > limits_.count) {
        throw Refused("there are more than the " + std::to_string(limits_.count) + " elements that are allowed");
    }
    frames_.push_back({State::Element});
}

void Loader::takeClass(Frame& frame) {
    if (!scalar_.is(Node::Kind::Text)) throw Refused(std::string("expected a class, found ") + describe(scalar_));
    frame.form = forms_.find(scalar_.text);
    if (frame.form == nullptr) throw Refused("there is no class " + inQuotes(scalar_.text));
    FieldForm const* const property = owningProperty();
    if (property == nullptr) return;
    auto const wanted = meta::Class::cast(property->value.type);
    if (!frame.form->type->conformsTo(wanted)) {
        throw Refused("an element of " + inQuotes(frame.form->name) + " can't stand where one of " +
                      inQuotes(keel::toUtf8(wanted->getQualifiedName())) + " is wanted");
    }
}

void Loader::takeId(Frame& frame) {
    std::optional<boost::uuids::uuid> const id = scalar_.is(Node::Kind::Text) ? idFrom(scalar_.text) : std::nullopt;
    if (!id || id->is_nil()) {
        throw Refused("expected an id, found " + (scalar_.text.empty() ? describe(scalar_) : inQuotes(scalar_.text)));
    }
    frame.id = *id;
}

void Loader::requireIdentity(Frame const& frame) const {
    if (frame.form == nullptr || frame.id.is_nil()) {
        throw Refused("an element's 'class' and 'id' must come before its 'values'");
    }
    if (frame.form->type->isAbstract()) throw Refused("the class " + inQuotes(frame.form->name) + " is abstract");
}

void Loader::make(Frame& frame) {
    requireIdentity(frame);
    auto const builder = frame.form->type->instantiateBuilder(model_);
    if (builder == nullptr) throw Refused("elements of " + inQuotes(frame.form->name) + " can't be made");
    if (model_->findElement(frame.id, FindElementBehavior::InMemoryOnly).impl() != nullptr) {
        throw Refused("another element has the same id");
    }
    frame.element = builder->create(frame.id).impl();
}

void Loader::finishElement() {
    Frame& frame = frames_.back();
    frame.key = Key::None;  // what fails now is the element as a whole
    ModelElement element;
    if ((frame.given >> static_cast<int>(Key::Ref) & 1U) != 0) {
        element = finishReference(frame);
    } else if (frame.isPostponed) {
        element = model_->createProxy(frame.form->type, ProxyId(store_, frame.id));
    } else {
        if (frame.element == nullptr) make(frame);
        element = ModelElement(frame.element);
    }
    if (FieldForm const* const property = owningProperty()) {
        property->property->descriptor()->place(*owningFrame().element, element);
    } else {
        roots_.push_back(element);
    }
}

/// Stands for an element whose place is elsewhere in the model, until it is reached.
ModelElement Loader::finishReference(Frame const& frame) {
    constexpr unsigned kAllowed = 1U << static_cast<int>(Key::Class) | 1U << static_cast<int>(Key::Ref);
    if (frame.given != kAllowed) throw Refused("a reference has a 'class' and a 'ref' and nothing else");
    if (owningProperty() == nullptr) throw Refused("a root can't be a reference");
    if (frame.form->type->isAbstract()) throw Refused("the class " + inQuotes(frame.form->name) + " is abstract");
    ModelElement const proxy = model_->createProxy(frame.form->type, ProxyId(frame.id));
    references_.push_back({proxy, place()});
    return proxy;
}

/// Every element that is referred to is there, unless it may be one that isn't read yet.
void Loader::checkReferences() {
    if (keep_) return;
    for (Reference const& reference : references_) {
        auto const found = model_->findElement(reference.proxy->getProxyId().id(), FindElementBehavior::InMemoryOnly);
        if (found.impl() != nullptr && found->getMetaClass()->conformsTo(reference.proxy->getMetaClass())) continue;
        refusedAt_ = reference.place;
        throw Refused(found.impl() == nullptr ? "there is no element of that id" : "the element is of another class");
    }
}

/// Whether the element being read is one that a root owns, and its place is known. Proxies have no order in a multimap,
/// in which members of one key do.
bool Loader::mayPostpone() const noexcept {
    constexpr std::size_t kOwnedByRoot = 5;  // document, roots, root, values, element
    bool const inList = frames_[frames_.size() - 2].state == State::Children;
    bool const isOwnedByRoot = frames_.size() == kOwnedByRoot + (inList ? 1 : 0);
    return keep_ && keyEnd_ > 0 && isOwnedByRoot && owningProperty()->property->getFlags() != ValueFlags::Multimap;
}

void Loader::beginPostponed(meta::Class const& type, boost::uuids::uuid const& id, std::size_t before) {
    begin_ = "element " + to_string(id);
    elements_ = before;
    frames_.push_back({State::Roots});
    Frame element{State::Element};
    element.form = &forms_.of(type);
    element.id = id;
    element.key = Key::Values;
    frames_.push_back(element);
}

void Loader::finishPostponed() { finishElement(); }

// --- Values of several parts ----------------------------------------------------------------------------------------

Node& Loader::addNode() {
    Node& parent = *open_.back();
    return parent.items.emplace_back();
}

void Loader::beginNode(Node::Kind kind) {
    Node* node = &compound_;
    if (isCollecting()) {
        node = &addNode();
    } else {
        compound_ = Node();
    }
    node->kind = kind;
    open_.push_back(node);
}

void Loader::endNode() {
    open_.pop_back();
    if (isCollecting()) return;
    Frame const& frame = frames_.back();
    storeProperty(*frame.element, *frame.property, compound_);
    compound_ = Node();
}

}  // namespace quay::zero::io
