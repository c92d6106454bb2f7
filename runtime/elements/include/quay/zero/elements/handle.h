// The handle of a generated class.
#pragma once

#include <quay/zero/query/forward.h>
#include <quay/zero/typed_handle.h>

#include <concepts>

namespace quay::zero::elements {

/// Returns the builder if the class that it makes is that of `table` or derived from it; otherwise raises InvalidValue.
QUAY_ZERO_API ModelElement::Builder& requireBuilderOf(ClassTable const& table, ModelElement::Builder& builder);

template <class X>
class ConcreteBuilder;

/// The parameter of createInto: a reference to a builder of class X or of a class derived from it.
template <class X>
class BuilderWrapper {
public:
    template <class B>
    requires std::derived_from<typename B::Element, X> BuilderWrapper(B& builder)
    noexcept : builder_(&builder) {}  // NOLINT(google-explicit-constructor): implicit on purpose
    /// For a builder whose class is known only at run time. InvalidValue unless it is X or derived from it.
    explicit BuilderWrapper(ModelElement::Builder& builder) : builder_(&requireBuilderOf(X::classTable(), builder)) {}

    ModelElement::Builder& builder() const noexcept { return *builder_; }

private:
    ModelElement::Builder* builder_;
};

/// Base of a generated class's handle; `Base` is the handle of its superclass.
template <class X, class Base>
class Handle : public TypedHandle<X, Base> {
public:
    using BuilderWrapper = elements::BuilderWrapper<X>;

    /// What the static accessors of properties return: constrainables for queries on X.
    template <class T>
    using Constrainable = query::ConstrainableWithAttachment<T, query::MetaclassAttachment<X>, false, void>;
    template <class T>
    using OptionalConstrainable = query::ConstrainableWithAttachment<T, query::MetaclassAttachment<X>, true, void>;
    template <class Y>
    using ConstrainableRelation = query::ConstrainableRelationWithAttachment<Y, query::MetaclassAttachment<X>>;
};

}  // namespace quay::zero::elements
