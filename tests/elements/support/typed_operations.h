// Typed setters and creations of the plan's properties, to be picked at random.
#pragma once

#include <quay/zero/builder.h>
#include <quay/zero/value.h>

#include <functional>
#include <vector>

namespace records {

using quay::zero::ModelElement;
using quay::zero::Value;

/// A typed setter by class and property. It takes the value apart, and nothing else of reflection is left.
struct TypedWrite {
    int slot;
    std::function<void(ModelElement const&, Value const&)> write;
};

std::vector<TypedWrite> const& typedWrites();

/// createIntoP, without a builder or with one that is given.
struct TypedCreation {
    int slot;
    std::function<void(ModelElement const&, ModelElement::Builder*)> create;
};

std::vector<TypedCreation> const& typedCreations();

}  // namespace records
