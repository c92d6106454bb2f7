#include "writer.h"

#include <keel/text.h>
#include <quay/zero/builder.h>
#include <quay/zero/children.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/value.h>

#include <algorithm>
#include <array>
#include <boost/unordered/unordered_flat_set.hpp>
#include <boost/uuid/uuid_io.hpp>

#include "failures.h"
#include "scalars.h"
#include "values.h"

namespace quay::zero::io {

namespace {

constexpr std::size_t kPiece = std::size_t{1} << 20;

ReflectionPrivateTag const& kResolving = ReflectionPrivateTag::PUBLIC_ACCESS;

void sortById(std::vector<ModelElement>& elements) {
    std::sort(elements.begin(), elements.end(),
              [](ModelElement const& a, ModelElement const& b) { return a->uuid() < b->uuid(); });
}

}  // namespace

Writer::Writer(Model const& model, Sink sink) : model_(model), fresh_(Model::create()), sink_(std::move(sink)) {}

std::string Writer::write() {
    roots_ = model_->getRoots();
    sortById(roots_);
    out_ = "{\"roots\":";
    appendList(out_, roots_.size(), [&](std::size_t i) { appendElement(roots_[i]); });
    checkUnresolved();
    out_ += ",\"schema\":";
    appendQuoted(out_, roots_.empty() ? std::string() : schemaOf(roots_.front()->getMetaClass()));
    out_ += ",\"version\":1}";
    return std::move(out_);
}

std::string Writer::write(ModelElement const& element) {
    roots_ = model_->getRoots();
    sortById(roots_);
    appendElement(element);
    checkUnresolved();
    return std::move(out_);
}

/// Reports a proxy without an element. It is checked at the end, since resolving a later proxy may have loaded the
/// element of an earlier one.
void Writer::checkUnresolved() {
    for (ModelElement const& proxy : unresolved_) {
        if (!model_->findElement(proxy->getProxyId().id(), FindElementBehavior::InMemoryOnly)) reportNotLoaded(proxy);
    }
}

void Writer::reportNotLoaded(ModelElement const& proxy) {
    reportSave(placeOf(*proxy.impl()), "the element isn't loaded: " + keel::toUtf8(proxy->identifier()));
}

void Writer::drain() {
    if (sink_ && out_.size() >= kPiece) sink_(out_);
}

/// Writes the values that a new element of the class has, once for each class, to compare others with.
void Writer::prepare(ClassForm& form) {
    if (form.isPrepared) return;
    auto const builder = form.type->instantiateBuilder(fresh_);
    ModelElement const element = builder == nullptr ? ModelElement() : builder->create({});
    for (FieldForm& property : form.properties) {
        if (!element || property.value.kind == ValueForm::Kind::Element) continue;
        appendProperty(property.initial, property, element->getPropertyValue(property.property, kResolving));
    }
    form.isPrepared = true;
}

void Writer::appendElement(ModelElement const& element) {
    ClassForm& form = forms_.of(element->getMetaClass());
    prepare(form);
    drain();
    appendClassAnd("id", form, element->uuid());
    out_ += ",\"values\":{";
    appendValues(*element.impl(), form);
    out_ += "}}";
}

/// Appends an object with the class and the id of an element, and leaves the object open.
void Writer::appendClassAnd(std::string_view key, ClassForm const& form, boost::uuids::uuid const& id) {
    out_ += "{\"class\":";
    appendQuoted(out_, form.name);
    out_.append(",\"").append(key).append("\":\"");
    std::array<char, 36> text;
    boost::uuids::to_chars(id, text.begin());
    out_.append(text.data(), text.size()).push_back('"');
}

/// Appends a value of a property: as an element where that is contained, otherwise as a reference to it. `again` says
/// that the element is a member of the same property already, so that this is a reference.
void Writer::appendChild(ModelElement::Impl& owner, FieldForm const& property, ModelElement const& child, bool again) {
    if (child->isProxy()) {
        ProxyId const id = child->getProxyId();
        if (id.hasOutsidePart(model_->storeName())) reportNotLoaded(child);
        unresolved_.push_back(child);
        appendClassAnd("ref", forms_.of(child->getMetaClass()), id.id());
        out_.push_back('}');
    } else if (&child->model() != model_.impl()) {
        reportSave(placeOf(owner) + "/values/" + property.name, "an element of another model stands there");
    } else if (again || !owner.owns(*child.impl()) || child->containmentFeature() != property.property) {
        appendClassAnd("ref", forms_.of(child->getMetaClass()), child->uuid());
        out_.push_back('}');
    } else {
        appendElement(child);
    }
}

void Writer::appendValues(ModelElement::Impl& element, ClassForm& form) {
    bool first = true;
    for (FieldForm const& property : form.properties) {
        if (property.value.kind == ValueForm::Kind::Element) {
            first = appendChildren(element, property, first);
            continue;
        }
        std::size_t const before = out_.size();
        appendKey(out_, property, first);
        std::size_t const begin = out_.size();
        try {
            appendProperty(out_, property, element.getPropertyValue(property.property, kResolving));
        } catch (Refused const& refused) {
            reportSave(placeOf(element) + "/values/" + property.name, refused.what());
        }
        if (std::string_view(out_).substr(begin) == property.initial) {
            out_.resize(before);
        } else {
            first = false;
        }
    }
}

/// Appends a property that holds elements, unless it is empty. `first`, and what is returned, is whether no property of
/// the element was written so far.
bool Writer::appendChildren(ModelElement::Impl& element, FieldForm const& property, bool first) {
    Children const children = childrenOf(element, property);
    if (children.elements.empty()) return first;
    appendKey(out_, property, first);
    if (!children.isList) {
        appendChild(element, property, children.elements.front(), false);
        return false;
    }
    boost::unordered_flat_set<ModelElement::Impl const*> written;  // a sequence may have an element more than once
    appendList(out_, children.elements.size(), [&](std::size_t i) {
        ModelElement const& child = children.elements[i];
        bool const again = !written.insert(child.impl()).second;
        appendChild(element, property, child, again);
    });
    return false;
}

Writer::Children Writer::childrenOf(ModelElement::Impl& element, FieldForm const& property) {
    PropertyDescriptor const& descriptor = *property.property->descriptor();
    Children result{membersOf(element, descriptor), descriptor.kind() == PropertyKind::ElementCollection};
    if (property.isSet) sortById(result.elements);
    return result;
}

/// A JSON pointer to the text of an element.
std::string Writer::placeOf(ModelElement::Impl& element) {
    auto const positionIn = [&](std::vector<ModelElement> const& all) {
        auto const found = std::find(all.begin(), all.end(), ModelElement(&element));
        return "/" + std::to_string(found - all.begin());
    };
    ModelElement::Impl* const owner = element.containerImpl();
    if (owner == nullptr) return "/roots" + positionIn(roots_);
    std::string const name = keel::toUtf8(element.containmentFeature()->getName());
    std::string const place = placeOf(*owner) + "/values/" + name;
    FieldForm const* const property = forms_.of(owner->getMetaClass()).find(name);
    Children const children = childrenOf(*owner, *property);
    return children.isList ? place + positionIn(children.elements) : place;
}

}  // namespace quay::zero::io
