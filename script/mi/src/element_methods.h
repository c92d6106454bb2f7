// Methods of script classes that create elements.
#pragma once

#include <ordo/factory/method.h>

#include <quay/zero/builder.h>

#include <memory>
#include <string_view>

#include "bound_property.h"

namespace quay::zero::mi {

/// The constructor: a model, then an initialiser and an id in either order, both optional.
class Construct final : public ordo::factory::OrdoMethod {
public:
    Construct(std::string_view shortName, std::string const& scriptName, std::string_view description);

    void call(ordo::MethodCall& call) const override;

private:
    BoundClass class_;
};

/// Makes a child in an owned property: an initialiser, then an id, both optional.
class CreateInto final : public ordo::factory::OrdoMethod {
public:
    CreateInto(meta::Property const& property, std::string const& ownerName, std::string_view description);

    void call(ordo::MethodCall& call) const override;

private:
    std::unique_ptr<ModelElement::Builder> emptyBuilder(Model const& model) const;

    BoundProperty property_;
    ordo::InternedName owner_;
    // The class of the children and the way to make builders of it: looked up when the first child is made, and valid
    // as long as the class exists.
    mutable meta::Class childClass_;
    mutable ClassTable::BuilderFactory makeBuilder_ = nullptr;
};

}  // namespace quay::zero::mi
