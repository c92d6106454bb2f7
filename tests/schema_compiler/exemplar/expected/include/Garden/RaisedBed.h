// Generated from garden.yaml. Changes belong there.
#pragma once

#include <quay/zero/elements/pattern.h>

#include "Garden/Bed.h"
#include "Garden/Handles.h"

namespace Garden {

/// A bed above the ground.
class GARDEN_API RaisedBed::Impl : public quay::zero::elements::Level<RaisedBed, Bed> {
 public:
  using Level::Level;
  template <class B>
  class BuilderBase;

  /// Number of legs.
  unsigned int getLegs() const { return legs_; }
  void setLegs(unsigned int value);

 private:
  struct [[gnu::visibility("hidden")]] Descriptors;
  friend class RaisedBed;

  unsigned int legs_ = 4u;
};

/// Fills a new RaisedBed before it exists; every setter returns the builder.
template <class B>
class RaisedBed::Impl::BuilderBase : public Bed::Impl::BuilderBase<B> {
 public:
  using Bed::Impl::BuilderBase<B>::BuilderBase;

  B& setLegs(unsigned int value) { return this->give(13, value); }
};

/// The properties of RaisedBed as the words of one query.
class GARDEN_API RaisedBed::Constrainables : public Bed::Constrainables {
 public:
  Constrainables(quay::zero::query::AbstractQuery& query, quay::zero::meta::Class const& cls, quay::zero::query::SearchClassMatchMode mode);
  explicit Constrainables(std::pair<quay::zero::query::AbstractQuery&, quay::zero::query::SearchClassMatchMode const> const& asked) : Constrainables(asked.first, metaClass(), asked.second) {}

  Constrainable<unsigned int> legs;
};

}  // namespace Garden
