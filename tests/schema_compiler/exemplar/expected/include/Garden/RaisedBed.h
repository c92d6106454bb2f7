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
  struct Rows;
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

/// Makes a new RaisedBed with its values and everything that it owns, in one transaction.
class GARDEN_API RaisedBed::Builder final : public quay::zero::elements::ConcreteBuilder<RaisedBed> {
 public:
  using ConcreteBuilder::ConcreteBuilder;
};

}  // namespace Garden
