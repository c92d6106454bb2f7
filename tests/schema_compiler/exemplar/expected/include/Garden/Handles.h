// Generated from package.yaml and the files that it lists. Changes belong there.
#pragma once

#include <quay/zero/elements/handle.h>

#include "Garden/Enumerations.h"
#include "Garden/export.h"

namespace Garden {

class Bed;
class Frame;
class Lane;
class Plant;
class RaisedBed;
class Stake;
class Support;
class Visitor;

/// A bed of the garden.
class GARDEN_API Bed : public quay::zero::elements::Handle<Bed, quay::zero::ModelElement> {
 public:
  class Impl;
  using Builder = quay::zero::elements::ConcreteBuilder<Bed>;
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
  static ConstrainableRelation<Lane> const& lanes();
  static ConstrainableRelation<Support> const& supports();
  static ConstrainableRelation<Plant> const& plants();
  static ConstrainableRelation<Visitor> const& visitors();
};

/// A glazed cover.
class GARDEN_API Frame : public quay::zero::elements::Handle<Frame, quay::zero::ModelElement> {
 public:
  class Impl;
  using Builder = quay::zero::elements::ConcreteBuilder<Frame>;
  class Constrainables;
  using Handle::Handle;

  static quay::zero::meta::Class const& metaClass();
  static quay::zero::ClassTable const& classTable();
  static Frame create(quay::zero::Model const& model, boost::uuids::uuid const& id);

  static Constrainable<bool> const& isOpen();
};

/// A row of one crop.
class GARDEN_API Lane : public quay::zero::elements::Handle<Lane, quay::zero::ModelElement> {
 public:
  class Impl;
  using Builder = quay::zero::elements::ConcreteBuilder<Lane>;
  class Constrainables;
  using Handle::Handle;

  static quay::zero::meta::Class const& metaClass();
  static quay::zero::ClassTable const& classTable();
  static Lane create(quay::zero::Model const& model, boost::uuids::uuid const& id);

  static Constrainable<std::u16string> const& crop();
};

/// One plant.
class GARDEN_API Plant : public quay::zero::elements::Handle<Plant, quay::zero::ModelElement> {
 public:
  class Impl;
  using Builder = quay::zero::elements::ConcreteBuilder<Plant>;
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
  using Builder = quay::zero::elements::ConcreteBuilder<RaisedBed>;
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
  static ConstrainableRelation<Lane> const& lanes();
  static ConstrainableRelation<Support> const& supports();
  static ConstrainableRelation<Plant> const& plants();
  static ConstrainableRelation<Visitor> const& visitors();
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
  using Builder = quay::zero::elements::ConcreteBuilder<Stake>;
  class Constrainables;
  using Handle::Handle;

  static quay::zero::meta::Class const& metaClass();
  static quay::zero::ClassTable const& classTable();
  static Stake create(quay::zero::Model const& model, boost::uuids::uuid const& id);

  static Constrainable<double> const& height();
};

/// Somebody who came to see a bed.
class GARDEN_API Visitor : public quay::zero::elements::Handle<Visitor, quay::zero::ModelElement> {
 public:
  class Impl;
  using Builder = quay::zero::elements::ConcreteBuilder<Visitor>;
  class Constrainables;
  using Handle::Handle;

  static quay::zero::meta::Class const& metaClass();
  static quay::zero::ClassTable const& classTable();
  static Visitor create(quay::zero::Model const& model, boost::uuids::uuid const& id);

  static Constrainable<int> const& week();
  static Constrainable<std::string> const& remark();
};

}  // namespace Garden
