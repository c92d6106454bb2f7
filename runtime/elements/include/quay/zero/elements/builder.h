// The builders of generated classes.
#pragma once

#include <quay/zero/builder.h>
#include <quay/zero/element_sequence.h>
#include <quay/zero/meta/types.h>

#include <boost/uuid/uuid.hpp>
#include <initializer_list>
#include <memory>
#include <utility>

namespace quay::zero::elements {

/// The head of a chain of setters: what they are made of. `B` is the builder that they return.
template <class B, class Base>
class BuilderBase : public ModelElement::Builder {
protected:
    using ModelElement::Builder::Builder;

    template <class T>
    B& give(std::uint16_t index, T value) {
        this->giveValue(index, std::move(value));
        return self();
    }
    template <class T>
    B& append(std::uint16_t index, T value) {
        this->appendValue(index, std::move(value));
        return self();
    }
    template <class T>
    B& append(std::uint16_t index, std::initializer_list<T> values) {
        this->appendValues(index, values);
        return self();
    }
    template <class T>
    B& dropValues(std::uint16_t index) {
        this->template dropAllValues<T>(index);
        return self();
    }
    B& giveChild(std::uint16_t index, std::unique_ptr<ModelElement::Builder> child) {
        this->giveOneChild(index, std::move(child));
        return self();
    }
    B& appendChild(std::uint16_t index, std::unique_ptr<ModelElement::Builder> child) {
        this->appendOneChild(index, std::move(child));
        return self();
    }
    B& dropChildren(std::uint16_t index) {
        this->dropAllChildren(index);
        return self();
    }

private:
    B& self() noexcept { return static_cast<B&>(*this); }
};

/// The builder of the concrete class X: the chain's setters, and the making of an X.
template <class X>
class ConcreteBuilder : public X::Impl::template BuilderBase<typename X::Builder> {
    using Setters = typename X::Impl::template BuilderBase<typename X::Builder>;

public:
    using Element = X;

    /// For a model that is given later.
    ConcreteBuilder() : Setters(X::classTable().highestIndex() + 1) {}
    explicit ConcreteBuilder(Model const& model) : Setters(model, X::classTable().highestIndex() + 1) {}

    meta::Class const& getMetaClass() const override { return X::metaClass(); }
    ClassTable const& classTable() const override { return X::classTable(); }

    /// Creates the element with everything below it, in one transaction; see ModelElement::Builder::create.
    X create() { return create(boost::uuids::uuid{}); }
    X create(boost::uuids::uuid const& id) { return X::cast(ModelElement::Builder::create(id)); }

protected:
    ModelElement::Impl* allocate(boost::uuids::uuid const& id) const override {
        return new typename X::Impl(this->getModel(), id);
    }
};

}  // namespace quay::zero::elements
