// Generated from garden.yaml. Changes belong there.
#include "Garden/Stake.h"

#include <quay/zero/elements/shapes.h>

#include "Garden/MetaPackageGarden.h"

namespace Garden {

namespace shapes = quay::zero::elements;

quay::zero::meta::Class const& Stake::metaClass() { return MetaPackageGarden::getInstance()->Stake; }

quay::zero::ClassTable const& Stake::classTable() {
  static constinit quay::zero::ClassTable table{&Support::classTable, 2, {}, &shapes::makeCollection<Stake>, &shapes::makeBuilder<Stake>};
  return table;
}

Stake Stake::create(quay::zero::Model const& model, boost::uuids::uuid const& id) { return shapes::create<Stake>(model, id); }

Stake::Constrainables::Constrainables(quay::zero::query::AbstractQuery& query, quay::zero::meta::Class const& cls, quay::zero::query::SearchClassMatchMode mode)
    : Support::Constrainables(query, cls, mode) {}

auto Stake::height() -> Constrainable<double> const& { static Constrainable<double> const made(MetaPackageGarden::getInstance()->Support_height); return made; }

}  // namespace Garden

template class quay::zero::elements::Level<Garden::Stake, Garden::Support>;
template class quay::zero::elements::ConcreteBuilder<Garden::Stake>;
