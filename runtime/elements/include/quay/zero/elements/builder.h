// The builders of generated classes.
#pragma once

#include <quay/zero/builder.h>
#include <quay/zero/elements/handle.h>

#include <boost/uuid/uuid.hpp>
#include <initializer_list>
#include <memory>
#include <utility>

namespace quay::zero::elements {

/// The base of a builder's chain of setters. `B` is the builder that each setter returns.
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

/// The builder of the concrete class X: creates a new X with its values and everything that it owns, in one
/// transaction. Every setter returns the builder. Functions that aren't inline are defined in definitions.h and
/// instantiated only in the source of the class.
template <class X>
class ConcreteBuilder final : public X::Impl::template BuilderBase<ConcreteBuilder<X>> {
    using Setters = typename X::Impl::template BuilderBase<ConcreteBuilder<X>>;

public:
    using Element = X;

    /// A builder without a model, to be set later.
    QUAY_ZERO_API ConcreteBuilder();
    QUAY_ZERO_API explicit ConcreteBuilder(Model const& model);
    QUAY_ZERO_API ~ConcreteBuilder() override;

    meta::Class const& getMetaClass() const override;
    ClassTable const& classTable() const override;

    /// Creates the element with everything below it, in one transaction; see ModelElement::Builder::create.
    QUAY_ZERO_API X create();
    QUAY_ZERO_API X create(boost::uuids::uuid const& id);

protected:
    ModelElement::Impl* allocate(boost::uuids::uuid const& id) const override;
};

}  // namespace quay::zero::elements
