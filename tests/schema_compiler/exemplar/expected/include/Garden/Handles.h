// Generated from package.yaml and the files that it lists. Changes belong there.
#pragma once

#include <quay/zero/elements/handle.h>

#include "Garden/Enumerations.h"
#include "Garden/export.h"

namespace Garden {

class Bed;
class Frame;
class Plant;
class RaisedBed;
class Stake;
class Support;

/// A bed of the garden.
class GARDEN_API Bed : public quay::zero::elements::Handle<Bed, quay::zero::ModelElement> {
 public:
  class Impl;
  class Builder;
  class Constrainables;
  using Handle::Handle;

  static quay::zero::meta::Class const& metaClass();
  static quay::zero::ClassTable const& classTable();
  static Bed create(quay::zero::Model const& model, boost::uuids::uuid const& id);

  static Constrainable<std::u16string> const& label();
  static Constrainable<Soil> const& soil();
  static Constrainable<double> const& width();
  static OptionalConstrainable<int> const& waterings();
  static ConstrainableRelation<Frame> const& frame();
  static ConstrainableRelation<Frame> const& frames();
  static ConstrainableRelation<Support> const& supports();
  static ConstrainableRelation<Plant> const& plants();
  static ConstrainableRelation<Plant> const& byHeight();
};

/// A glazed cover.
class GARDEN_API Frame : public quay::zero::elements::Handle<Frame, quay::zero::ModelElement> {
 public:
  class Impl;
  class Builder;
  class Constrainables;
  using Handle::Handle;

  static quay::zero::meta::Class const& metaClass();
  static quay::zero::ClassTable const& classTable();
  static Frame create(quay::zero::Model const& model, boost::uuids::uuid const& id);

  static Constrainable<bool> const& isOpen();
};

/// One plant.
class GARDEN_API Plant : public quay::zero::elements::Handle<Plant, quay::zero::ModelElement> {
 public:
  class Impl;
  class Builder;
  class Constrainables;
  using Handle::Handle;

  static quay::zero::meta::Class const& metaClass();
  static quay::zero::ClassTable const& classTable();
  static Plant create(quay::zero::Model const& model, boost::uuids::uuid const& id);

  static Constrainable<std::u16string> const& name();
  static Constrainable<double> const& height();
};

/// A bed above the ground.
class GARDEN_API RaisedBed : public quay::zero::elements::Handle<RaisedBed, Bed> {
 public:
  class Impl;
  class Builder;
  class Constrainables;
  using Handle::Handle;

  static quay::zero::meta::Class const& metaClass();
  static quay::zero::ClassTable const& classTable();
  static RaisedBed create(quay::zero::Model const& model, boost::uuids::uuid const& id);

  static Constrainable<std::u16string> const& label();
  static Constrainable<Soil> const& soil();
  static Constrainable<double> const& width();
  static OptionalConstrainable<int> const& waterings();
  static ConstrainableRelation<Frame> const& frame();
  static ConstrainableRelation<Frame> const& frames();
  static ConstrainableRelation<Support> const& supports();
  static ConstrainableRelation<Plant> const& plants();
  static ConstrainableRelation<Plant> const& byHeight();
  static Constrainable<unsigned int> const& legs();
};

/// Something to climb on.
class GARDEN_API Support : public quay::zero::elements::Handle<Support, quay::zero::ModelElement> {
 public:
  class Impl;
  class Constrainables;
  using Handle::Handle;

  static quay::zero::meta::Class const& metaClass();
  static quay::zero::ClassTable const& classTable();

  static Constrainable<double> const& height();
};

/// A single pole.
class GARDEN_API Stake : public quay::zero::elements::Handle<Stake, Support> {
 public:
  class Impl;
  class Builder;
  class Constrainables;
  using Handle::Handle;

  static quay::zero::meta::Class const& metaClass();
  static quay::zero::ClassTable const& classTable();
  static Stake create(quay::zero::Model const& model, boost::uuids::uuid const& id);

  static Constrainable<double> const& height();
};

}  // namespace Garden
