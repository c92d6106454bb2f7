#include <quay/zero/builder.h>
#include <quay/zero/meta/no_such_property.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/report.h>
#include <quay/zero/value.h>

#include <quay0/messages.h>

#include <algorithm>

namespace quay::zero {

/// A value that a property was given.
class ModelElement::Builder::Given {
public:
    Given(std::uint16_t index, CellOperations const& operations) : operations_(&operations), index_(index) {
        operations.make(value_);
    }
    Given(Given&& other) noexcept : operations_(other.operations_), index_(other.index_) {
        operations_->move(other.value_, value_);
        other.operations_ = nullptr;
    }
    Given& operator=(Given&&) = delete;
    ~Given() {
        if (operations_ != nullptr) operations_->drop(value_);
    }

    std::uint16_t index() const noexcept { return index_; }
    Cell& value() noexcept { return value_; }
    Cell const& value() const noexcept { return value_; }

private:
    CellOperations const* operations_;  // null once the value moved away
    std::uint16_t index_;
    Cell value_;
};

/// The child builders of a property.
struct ModelElement::Builder::Children {
    std::uint16_t index;
    std::vector<std::unique_ptr<Builder>> builders;
};

ModelElement::Builder::Builder(Model const& model, unsigned long bits) : model_(model), given_(bits) {}
ModelElement::Builder::Builder(unsigned long bits) : given_(bits) {}
ModelElement::Builder::~Builder() = default;

void ModelElement::Builder::setModel(Model const& model) {
    model_ = model;
    for (Children& children : children_) {
        for (auto& child : children.builders) child->setModel(model);
    }
}

// --- What was given -------------------------------------------------------------------------------------------------

Cell& ModelElement::Builder::cellAt(std::uint16_t index, CellOperations const& operations) {
    if (given_.test(index)) {
        auto const found =
            std::find_if(values_.begin(), values_.end(), [index](Given const& g) { return g.index() == index; });
        if (found != values_.end()) return found->value();
    }
    if (values_.capacity() == 0) values_.reserve(8);
    values_.emplace_back(index, operations);
    given_.set(index);
    return values_.back().value();
}

template struct ModelElement::Builder::GivenValue<bool>;
template struct ModelElement::Builder::GivenValue<int>;
template struct ModelElement::Builder::GivenValue<unsigned int>;
template struct ModelElement::Builder::GivenValue<unsigned long>;
template struct ModelElement::Builder::GivenValue<double>;
template struct ModelElement::Builder::GivenValue<std::u16string>;
template struct ModelElement::Builder::GivenValue<std::string>;

std::vector<std::unique_ptr<ModelElement::Builder>>& ModelElement::Builder::childrenAt(std::uint16_t index) {
    given_.set(index);
    // Child builders are kept by rising property index, which is the order of creation.
    auto place =
        std::find_if(children_.begin(), children_.end(), [index](Children const& c) { return c.index >= index; });
    if (place == children_.end() || place->index != index) {
        place = children_.insert(place, Children{index, {}});
    }
    return place->builders;
}

void ModelElement::Builder::requireFit(std::uint16_t index, Builder const* child) const {
    if (child == nullptr) return;
    auto const wanted = meta::Class::cast(getMetaClass()->getPropertyByIndex(index)->getType());
    if (child->getMetaClass()->conformsTo(wanted)) return;
    reportException(quay0::messages::CannotAddIncompatibleTypes(child->getMetaClass()->getQualifiedName(),
                                                                wanted->getQualifiedName()));
}

void ModelElement::Builder::giveOneChild(std::uint16_t index, std::unique_ptr<Builder> child) {
    requireFit(index, child.get());
    auto& builders = childrenAt(index);
    builders.clear();
    if (child != nullptr) builders.push_back(std::move(child));
}

void ModelElement::Builder::appendOneChild(std::uint16_t index, std::unique_ptr<Builder> child) {
    requireFit(index, child.get());
    auto& builders = childrenAt(index);
    if (child != nullptr) builders.push_back(std::move(child));
}

void ModelElement::Builder::dropAllChildren(std::uint16_t index) { childrenAt(index).clear(); }

void ModelElement::Builder::setOrAdd(meta::Property const& property, Value const& value) {
    PropertyDescriptor const* const descriptor = classTable().descriptorOf(property);
    if (descriptor == nullptr || !descriptor->takesValues()) meta::reportNoSuchProperty(property, getMetaClass());
    descriptor->give(*this, property, value);
}

void ModelElement::Builder::setOrAdd(meta::Property const& property, std::unique_ptr<Builder>& child) {
    PropertyDescriptor const* const descriptor = classTable().descriptorOf(property);
    bool const fits = descriptor != nullptr && descriptor->ownsElements() && child != nullptr &&
                      child->getMetaClass()->conformsTo(meta::Class::cast(property->getType()));
    if (!fits) meta::reportNoSuchProperty(property, getMetaClass());
    if (descriptor->kind() == PropertyKind::Child) {
        giveOneChild(descriptor->index(), std::move(child));
    } else {
        appendOneChild(descriptor->index(), std::move(child));
    }
}

// --- Creation -------------------------------------------------------------------------------------------------------

ModelElement ModelElement::Builder::create(boost::uuids::uuid const& id) { return doCreate(false, id); }

ModelElement ModelElement::Builder::createSuppressed(boost::uuids::uuid const& id) { return doCreate(true, id); }

ModelElement ModelElement::Builder::doCreate(bool suppressCascade, boost::uuids::uuid const& id) {
    if (!model_) reportException(quay0::messages::CannotCreateWithoutModel().about(getMetaClass()->getName()));
    if (orchestrator_ != nullptr) {
        ModelElement const present = orchestrator_->getCreatedElement(this);
        return present ? present : make(suppressCascade, id);
    }
    Orchestrator run(this);
    ModelElement made = make(suppressCascade, id);
    run.commit();
    return made;
}

ModelElement ModelElement::Builder::make(bool suppressCascade, boost::uuids::uuid const& id) {
    ModelElement made(allocate(id));
    made_ = made;
    for (Given const& given : values_) {
        classTable().descriptorAt(given.index())->build(*made.impl(), given.value());
    }
    if (!suppressCascade) {
        made->notifyCreated();
        cascadeCreation(*made.impl());
    }
    return made;
}

void ModelElement::Builder::cascadeCreation(ModelElement::Impl& element) {
    for (Children const& children : children_) {
        PropertyDescriptor const& descriptor = *classTable().descriptorAt(children.index);
        for (auto const& child : children.builders) {
            orchestrator_->addBuilder(child.get());
            descriptor.place(element, child->create(boost::uuids::uuid{}));
        }
    }
}

// --- Orchestrator ---------------------------------------------------------------------------------------------------

ModelElement::Builder::Orchestrator::Orchestrator(Builder* top) : builders_{top}, savepoint_(top->model_->journal()) {
    top->orchestrator_ = this;
}

ModelElement::Builder::Orchestrator::~Orchestrator() {
    for (Builder* builder : builders_) {
        builder->orchestrator_ = nullptr;
        builder->made_ = ModelElement();
    }
}

void ModelElement::Builder::Orchestrator::addBuilder(Builder* child) {
    if (child->orchestrator_ == this) return;
    builders_.push_back(child);
    child->orchestrator_ = this;
    child->model_ = builders_.front()->model_;
}

ModelElement ModelElement::Builder::Orchestrator::getCreatedElement(Builder const* builder) const {
    return builder->orchestrator_ == this ? builder->made_ : ModelElement();
}

void ModelElement::Builder::Orchestrator::commit() { savepoint_.commit(); }

}  // namespace quay::zero

namespace quay::zero::meta {

std::unique_ptr<ModelElement::Builder> Class::Impl::instantiateBuilder(Model const& model) const {
    auto const make = MetaRegistry::getInstance()->builderFactory(Class::of(const_cast<Impl*>(this)));
    return make == nullptr ? nullptr : make(model);
}

}  // namespace quay::zero::meta
