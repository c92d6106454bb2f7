// Generated from garden.yaml. Changes belong there.
#pragma once

#include <quay/zero/elements/pattern.h>

#include "Garden/Handles.h"

namespace Garden {

/// Something to climb on.
class GARDEN_API Support::Impl : public quay::zero::elements::Level<Support, quay::zero::ModelElement> {
 public:
  using Level::Level;
  template <class B>
  class BuilderBase;

  /// Height in metres.
  double getHeight() const { return height_; }
  void setHeight(double value);

 private:
  struct [[gnu::visibility("hidden")]] Descriptors;
  friend class Support;

  double height_ = 0.0;
};

/// Fills a new Support before it exists; every setter returns the builder.
template <class B>
class Support::Impl::BuilderBase : public quay::zero::elements::BuilderBase<B, quay::zero::ModelElement> {
 public:
  using quay::zero::elements::BuilderBase<B, quay::zero::ModelElement>::BuilderBase;

  B& setHeight(double value) { return this->give(1, value); }
};

/// The properties of Support as the words of one query.
class GARDEN_API Support::Constrainables : public quay::zero::ModelElement::Constrainables {
 public:
  Constrainables(quay::zero::query::AbstractQuery& query, quay::zero::meta::Class const& cls, quay::zero::query::SearchClassMatchMode mode);
  explicit Constrainables(std::pair<quay::zero::query::AbstractQuery&, quay::zero::query::SearchClassMatchMode const> const& asked) : Constrainables(asked.first, metaClass(), asked.second) {}

  Constrainable<double> height;
};

}  // namespace Garden
