// Generated from garden.yaml. Changes belong there.
#include "Garden/Bed.h"

#include <quay/zero/elements/shapes.h>

#include "Garden/Frame.h"
#include "Garden/MetaPackageGarden.h"
#include "Garden/Plant.h"
#include "Garden/Support.h"

namespace Garden {

namespace shapes = quay::zero::elements;

struct Bed::Impl::Descriptors {
  static constexpr shapes::Single<std::u16string> label{1, &Impl::label_};
  static constexpr shapes::Single<Soil> soil{2, &Impl::soil_};
  static constexpr shapes::Single<double> width{3, &Impl::width_};
  static constexpr shapes::SingleArray plan{4, &Impl::plan_};
  static constexpr shapes::Optional<int> waterings{5, &Impl::waterings_};
  static constexpr shapes::Sequence<double> readings{6, &Impl::readings_};
  static constexpr shapes::Set<std::string> tags{7, &Impl::tags_};
  static constexpr shapes::SingleOwned<Frame> frame{8, &Impl::frame_};
  static constexpr shapes::SequenceOwned<Frame> frames{9, &Impl::frames_};
  static constexpr shapes::SetOwned<Support> supports{10, &Impl::supports_};
  static constexpr shapes::MapOwned<std::u16string, Plant> plants{11, &Impl::plants_, shapes::key<&Plant::Impl::getName>};
  static constexpr shapes::MultimapOwned<double, Plant> byHeight{12, &Impl::byHeight_, shapes::key<&Plant::Impl::getHeight>};
  static constexpr shapes::Derived<&Impl::getWidthInFeet, &Impl::setWidthInFeet> widthInFeet{};
};

quay::zero::meta::Class const& Bed::metaClass() { return MetaPackageGarden::getInstance()->Bed; }

quay::zero::ClassTable const& Bed::classTable() {
  using D = Impl::Descriptors;
  static constexpr quay::zero::PropertyDescriptor const* descriptors[] = {
      &D::label, &D::soil, &D::width, &D::plan, &D::waterings, &D::readings, &D::tags, &D::frame, &D::frames,
      &D::supports, &D::plants, &D::byHeight, &D::widthInFeet,
  };
  static constinit quay::zero::ClassTable table{&quay::zero::ModelElement::classTable, 1, descriptors, &shapes::makeCollection<Bed>, &shapes::makeBuilder<Bed>};
  return table;
}

Bed Bed::create(quay::zero::Model const& model, boost::uuids::uuid const& id) { return shapes::create<Bed>(model, id); }

Bed::Impl::Impl(quay::zero::Model const& model, boost::uuids::uuid const& id)
    : Level(model, id),
      readings_(this, 6),
      tags_(this, 7),
      frames_(this, 9),
      supports_(this, 10),
      plants_(this, 11),
      byHeight_(this, 12) {}

void Bed::Impl::setLabel(std::u16string const& value) { Descriptors::label.set(*this, value); }
void Bed::Impl::setSoil(Soil value) { Descriptors::soil.set(*this, value); }
void Bed::Impl::setWidth(double value) { Descriptors::width.set(*this, value); }
void Bed::Impl::setPlan(zxArray_tag const* value) { Descriptors::plan.set(*this, value); }
void Bed::Impl::setWaterings(boost::optional<int> const& value) { Descriptors::waterings.set(*this, value); }

Frame Bed::Impl::getFrame() const { return Descriptors::frame.get(*this); }
void Bed::Impl::setFrame(Frame const& value) { Descriptors::frame.set(*this, value); }
void Bed::Impl::basicSetFrame(Frame const& value) { Descriptors::frame.basicSet(*this, value); }
Frame Bed::Impl::createIntoFrame() { return Descriptors::frame.createInto(*this); }
Frame Bed::Impl::createIntoFrame(Frame::BuilderWrapper builder, boost::uuids::uuid const& id) { return Descriptors::frame.createInto(*this, builder, id); }

Frame Bed::Impl::createIntoFrames() { return Descriptors::frames.createInto(*this); }
Frame Bed::Impl::createIntoFrames(Frame::BuilderWrapper builder, boost::uuids::uuid const& id) { return Descriptors::frames.createInto(*this, builder, id); }

Support Bed::Impl::createIntoSupports(Support::BuilderWrapper builder, boost::uuids::uuid const& id) { return Descriptors::supports.createInto(*this, builder, id); }

Plant Bed::Impl::createIntoPlants() { return Descriptors::plants.createInto(*this); }
Plant Bed::Impl::createIntoPlants(Plant::BuilderWrapper builder, boost::uuids::uuid const& id) { return Descriptors::plants.createInto(*this, builder, id); }

Plant Bed::Impl::createIntoByHeight() { return Descriptors::byHeight.createInto(*this); }
Plant Bed::Impl::createIntoByHeight(Plant::BuilderWrapper builder, boost::uuids::uuid const& id) { return Descriptors::byHeight.createInto(*this, builder, id); }

Bed::Constrainables::Constrainables(quay::zero::query::AbstractQuery& query, quay::zero::meta::Class const& cls, quay::zero::query::SearchClassMatchMode mode)
    : quay::zero::ModelElement::Constrainables(query, cls, mode),
      label(Attachment(*this), MetaPackageGarden::getInstance()->Bed_label),
      soil(Attachment(*this), MetaPackageGarden::getInstance()->Bed_soil),
      width(Attachment(*this), MetaPackageGarden::getInstance()->Bed_width),
      waterings(Attachment(*this), MetaPackageGarden::getInstance()->Bed_waterings),
      frame(Attachment(*this), MetaPackageGarden::getInstance()->Bed_frame),
      frames(Attachment(*this), MetaPackageGarden::getInstance()->Bed_frames),
      supports(Attachment(*this), MetaPackageGarden::getInstance()->Bed_supports),
      plants(Attachment(*this), MetaPackageGarden::getInstance()->Bed_plants),
      byHeight(Attachment(*this), MetaPackageGarden::getInstance()->Bed_byHeight) {}

auto Bed::label() -> Constrainable<std::u16string> const& { static Constrainable<std::u16string> const made(MetaPackageGarden::getInstance()->Bed_label); return made; }
auto Bed::soil() -> Constrainable<Soil> const& { static Constrainable<Soil> const made(MetaPackageGarden::getInstance()->Bed_soil); return made; }
auto Bed::width() -> Constrainable<double> const& { static Constrainable<double> const made(MetaPackageGarden::getInstance()->Bed_width); return made; }
auto Bed::waterings() -> OptionalConstrainable<int> const& { static OptionalConstrainable<int> const made(MetaPackageGarden::getInstance()->Bed_waterings); return made; }
auto Bed::frame() -> ConstrainableRelation<Frame> const& { static ConstrainableRelation<Frame> const made(MetaPackageGarden::getInstance()->Bed_frame); return made; }
auto Bed::frames() -> ConstrainableRelation<Frame> const& { static ConstrainableRelation<Frame> const made(MetaPackageGarden::getInstance()->Bed_frames); return made; }
auto Bed::supports() -> ConstrainableRelation<Support> const& { static ConstrainableRelation<Support> const made(MetaPackageGarden::getInstance()->Bed_supports); return made; }
auto Bed::plants() -> ConstrainableRelation<Plant> const& { static ConstrainableRelation<Plant> const made(MetaPackageGarden::getInstance()->Bed_plants); return made; }
auto Bed::byHeight() -> ConstrainableRelation<Plant> const& { static ConstrainableRelation<Plant> const made(MetaPackageGarden::getInstance()->Bed_byHeight); return made; }

}  // namespace Garden

template class quay::zero::elements::ConcreteBuilder<Garden::Bed>;
