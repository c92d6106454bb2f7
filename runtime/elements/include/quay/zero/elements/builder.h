// The builders of generated classes.
#pragma once

#include <quay/zero/builder.h>
#include <quay/zero/elements/handle.h>

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

/// The builder of the concrete class X: makes a new X with its values and everything that it owns, in one transaction.
/// It has the chain's setters; every one returns the builder. What isn't inline stands in definitions.h, and is
/// instantiated in the class's source alone.
template <class X>
class QUAY_ZERO_API ConcreteBuilder final : public X::Impl::template BuilderBase<ConcreteBuilder<X>> {
    using Setters = typename X::Impl::template BuilderBase<ConcreteBuilder<X>>;

public:
    using Element = X;

    /// For a model that is given later.
    ConcreteBuilder();
    explicit ConcreteBuilder(Model const& model);
    ~ConcreteBuilder() override;

    meta::Class const& getMetaClass() const override;
    ClassTable const& classTable() const override;

    /// Creates the element with everything below it, in one transaction; see ModelElement::Builder::create.
    X create();
    X create(boost::uuids::uuid const& id);

protected:
    ModelElement::Impl* allocate(boost::uuids::uuid const& id) const override;
};

}  // namespace quay::zero::elements
