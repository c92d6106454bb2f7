// Generated from garden.yaml. Changes belong there.
#include "Garden/Plant.h"

#include <quay/zero/elements/shapes.h>

#include "Garden/MetaPackageGarden.h"

namespace Garden {

namespace shapes = quay::zero::elements;

struct Plant::Impl::Descriptors {
  static constexpr shapes::KeyedMap nameMaps[] = {{&Bed::classTable, 11, true}};
  static constexpr shapes::SingleKey<std::u16string> name{1, &Impl::name_, nameMaps};
  static constexpr shapes::Single<double> height{2, &Impl::height_};
};

quay::zero::meta::Class const& Plant::metaClass() { return MetaPackageGarden::getInstance()->Plant; }

quay::zero::ClassTable const& Plant::classTable() {
  using D = Impl::Descriptors;
  static constexpr quay::zero::PropertyDescriptor const* descriptors[] = {
      &D::name, &D::height,
  };
  static constinit quay::zero::ClassTable table{&quay::zero::ModelElement::classTable, 1, descriptors, &shapes::makeCollection<Plant>, &shapes::makeBuilder<Plant>};
  return table;
}

Plant Plant::create(quay::zero::Model const& model, boost::uuids::uuid const& id) { return shapes::create<Plant>(model, id); }

void Plant::Impl::setName(std::u16string const& value) { Descriptors::name.set(*this, value); }
void Plant::Impl::setHeight(double value) { Descriptors::height.set(*this, value); }

Plant::Constrainables::Constrainables(quay::zero::query::AbstractQuery& query, quay::zero::meta::Class const& cls, quay::zero::query::SearchClassMatchMode mode)
    : quay::zero::ModelElement::Constrainables(query, cls, mode),
      name(Attachment(*this), MetaPackageGarden::getInstance()->Plant_name),
      height(Attachment(*this), MetaPackageGarden::getInstance()->Plant_height) {}

auto Plant::name() -> Constrainable<std::u16string> const& { static Constrainable<std::u16string> const made(MetaPackageGarden::getInstance()->Plant_name); return made; }
auto Plant::height() -> Constrainable<double> const& { static Constrainable<double> const made(MetaPackageGarden::getInstance()->Plant_height); return made; }

}  // namespace Garden

template class quay::zero::elements::Level<Garden::Plant, quay::zero::ModelElement>;
template class quay::zero::elements::ConcreteBuilder<Garden::Plant>;
