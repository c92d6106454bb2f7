// Generated from package.yaml and the files that it lists. Changes belong there.
#include "Garden/MetaPackageGarden.h"

#include <quay/zero/elements/create.h>
#include <quay/zero/query/comparison.h>

#include "Garden/Enumerations.h"
#include "Garden/Handles.h"

namespace {

namespace declare = quay::zero::meta::declare;
using declare::slot;
using P = MetaPackageGarden;

// The columns of the tables:
//   Property   name, shape, type, index (0: derived, or a data type's field), default, key, id, slot
//   Argument   name, type, id, slot
//   Operation  name, result, id, arguments, slot
//   Class      name, abstract, base, id, properties, operations, slot, class table
//   DataType   name, id, fields, slot, collections, serializer
//   Literal    name, value, id, slot
//   Enum       name, id, literals, slot, collections, serializers
// A type whose script name isn't the prefix and its name has that in one column more.

constexpr declare::Property bedProperties[] = {
    {u"label", declare::Shape::Single, u"String", 1, u"", nullptr, "85868903-c5a0-32f6-91c5-5f98aedd2121", slot(&P::Bed_label)},
    {u"soil", declare::Shape::Single, u"Soil", 2, u"Loam", nullptr, "9fb6270f-78fc-3b2f-96cf-429b8ecc9925", slot(&P::Bed_soil)},
    {u"width", declare::Shape::Single, u"Real", 3, u"1.2", nullptr, "36694c54-8ff8-370f-867b-839470d8b806", slot(&P::Bed_width)},
    {u"widthInFeet", declare::Shape::Single, u"Real", 0, nullptr, nullptr, "b29ab827-0f01-3e8f-b331-a144a6cf84ab", slot(&P::Bed_widthInFeet)},
    {u"plan", declare::Shape::Single, u"ZxArray", 4, nullptr, nullptr, "0f9f6738-15cf-3ecf-b7a9-032268c9a58b", slot(&P::Bed_plan)},
    {u"waterings", declare::Shape::Optional, u"Integer", 5, nullptr, nullptr, "dca85bc5-7dc3-3168-a316-0e979900a6eb", slot(&P::Bed_waterings)},
    {u"readings", declare::Shape::Sequence, u"Real", 6, nullptr, nullptr, "700128c3-306e-3482-b12a-8fe89cafed00", slot(&P::Bed_readings)},
    {u"tags", declare::Shape::Set, u"StdString", 7, nullptr, nullptr, "f25e48cc-8e83-3f69-b511-af2c54c6c606", slot(&P::Bed_tags)},
    {u"frame", declare::Shape::SingleOwned, u"Frame", 8, nullptr, nullptr, "8fe005ea-b10e-3b14-8daa-a7d9bfea2e1d", slot(&P::Bed_frame)},
    {u"lanes", declare::Shape::SequenceOwned, u"Lane", 9, nullptr, nullptr, "7d8884f0-600f-3d17-a607-89460fbbc178", slot(&P::Bed_lanes)},
    {u"supports", declare::Shape::SetOwned, u"Support", 10, nullptr, nullptr, "4f3534c0-a501-311e-8178-a5fc93a0c0df", slot(&P::Bed_supports)},
    {u"plants", declare::Shape::MapOwned, u"Plant", 11, nullptr, u"name", "ebce61eb-e97d-35c1-90cc-b02dc8faf26b", slot(&P::Bed_plants)},
    {u"visitors", declare::Shape::MultimapOwned, u"Visitor", 12, nullptr, u"week", "a9b1e5bc-43e5-3570-8bd8-526f34fbbb9b", slot(&P::Bed_visitors)},
};

constexpr declare::Property frameProperties[] = {
    {u"isOpen", declare::Shape::Single, u"Boolean", 1, u"false", nullptr, "920991be-8936-348a-8f34-f3ce52810bd8", slot(&P::Frame_isOpen)},
};

constexpr declare::Property laneProperties[] = {
    {u"crop", declare::Shape::Single, u"String", 1, u"", nullptr, "d42adb4e-f618-3e6c-bea5-74f4bb247179", slot(&P::Lane_crop)},
};

constexpr declare::Property plantProperties[] = {
    {u"name", declare::Shape::Single, u"String", 1, u"", nullptr, "a5cf73c8-ea79-3043-9e0b-8f6522611be4", slot(&P::Plant_name)},
    {u"height", declare::Shape::Single, u"Real", 2, nullptr, nullptr, "9e6e41de-074c-3bce-ad05-bea2369df299", slot(&P::Plant_height)},
};

constexpr declare::Property raisedBedProperties[] = {
    {u"legs", declare::Shape::Single, u"UnlimitedNatural", 13, u"4", nullptr, "06e633e4-d98f-37d0-b632-4ad3499d03ba", slot(&P::RaisedBed_legs)},
};

constexpr declare::Property supportProperties[] = {
    {u"height", declare::Shape::Single, u"Real", 1, nullptr, nullptr, "a0014ecd-9ae4-3d52-b06e-865530feda56", slot(&P::Support_height)},
};

constexpr declare::Property visitorProperties[] = {
    {u"week", declare::Shape::Single, u"Integer", 1, nullptr, nullptr, "751c7126-945c-39dc-8ce6-cc6191708c63", slot(&P::Visitor_week)},
    {u"remark", declare::Shape::Single, u"StdString", 2, u"none", nullptr, "d810c92f-d627-37b4-9ee6-53db61dddf44", slot(&P::Visitor_remark)},
};

constexpr declare::Class classes[] = {
    {u"Bed", false, u"ModelElement", "3425dad7-39d3-30f8-bb15-3d8fab877a98", bedProperties, {}, slot(&P::Bed), &Garden::Bed::classTable},
    {u"Frame", false, u"ModelElement", "dcc4d0ee-5b7a-3459-a9aa-80c3f533eeeb", frameProperties, {}, slot(&P::Frame), &Garden::Frame::classTable},
    {u"Lane", false, u"ModelElement", "c1a1a44e-8013-3472-a213-0e034df3c075", laneProperties, {}, slot(&P::Lane), &Garden::Lane::classTable},
    {u"Plant", false, u"ModelElement", "fe5be4e5-d80a-372d-ae76-08b9ebe9ea57", plantProperties, {}, slot(&P::Plant), &Garden::Plant::classTable},
    {u"RaisedBed", false, u"Bed", "3ea90ec1-158a-3c27-87af-80f08a0c2e52", raisedBedProperties, {}, slot(&P::RaisedBed), &Garden::RaisedBed::classTable},
    {u"Stake", false, u"Support", "0eb3ef2e-c4f9-3f3f-8691-8743fb36436c", {}, {}, slot(&P::Stake), &Garden::Stake::classTable},
    {u"Support", true, u"ModelElement", "6b46619f-7835-3510-a509-82429a62a8c7", supportProperties, {}, slot(&P::Support), &Garden::Support::classTable},
    {u"Visitor", false, u"ModelElement", "54315d21-847a-3f56-8d1b-b7ec6c618f75", visitorProperties, {}, slot(&P::Visitor), &Garden::Visitor::classTable},
};

constexpr declare::Primitive primitives[] = {
    {u"StdString", slot(&P::StdString)},
    {u"ZxArray", slot(&P::ZxArray)},
};

constexpr declare::Literal soilLiterals[] = {
    {u"Loam", 0, "8af4ec2e-d2d2-3578-97dc-63d726f5b733", slot(&P::Soil_Loam)},
    {u"Sand", 1, "b97d22cb-e70e-3b5e-91d7-32b8712e6688", slot(&P::Soil_Sand)},
};

constexpr declare::Enum enums[] = {
    {u"Soil", "bd849f4b-b0e5-3cd1-97ea-f871b9477c72", soilLiterals, slot(&P::Soil), &quay::zero::elements::makeValueCollection<Garden::Soil>, &declare::makeEnumSerializers<Garden::Soil>},
};

constexpr char16_t const* imports[] = {
    u"quay0://quay/quay0/meta/19700101",
};

constexpr declare::Package package{
    .id = "2d9f1fbd-af6d-35c8-941d-025b9590dde6",
    .uri = u"quay0://quay/garden/1",
    .imports = imports,
    .schemaName = u"Garden",
    .schemaUri = u"quay0://quay/garden/1/Garden",
    .nativePrefix = "Garden::",
    .scriptPrefix = "garden.",
    .root = slot(&P::rootPackage),
    .schema = slot(&P::Garden),
    .classes = classes,
    .dataTypes = {},
    .primitives = primitives,
    .enums = enums,
};

}  // namespace

MetaPackageGarden* MetaPackageGarden::getInstance() {
  static MetaPackageGarden* const instance = new MetaPackageGarden;
  return instance;
}

void MetaPackageGarden::bringUp() {
  MetaPackageGarden* const instance = getInstance();
  if (!instance->rootPackage) instance->initialize();
}

MetaPackageGarden::MetaPackageGarden() : DeclaredPackage(package) { initialize(); }

void MetaPackageGarden::initialize() {
  declareInRegistry(
      [] {},
      [this](auto* registry) { instantiate_Garden(registry); },
      [this](auto* registry, auto* serializers) { weave_Garden(registry, serializers); });
}

void MetaPackageGarden::instantiate_Garden(quay::zero::meta::MetaRegistry* registry) { instantiate(registry); }

void MetaPackageGarden::weave_Garden(quay::zero::meta::MetaRegistry* registry,
    quay::zero::meta::PropertySerializerRegistry* serializers) {
  weave(registry, serializers);
}

quay::zero::meta::Type const& quay::zero::TypeOf<Garden::Soil>::type() { return MetaPackageGarden::getInstance()->Soil; }

template struct GARDEN_API quay::zero::query::Comparisons<Garden::Soil, Garden::Soil>;
template struct GARDEN_API quay::zero::query::Presence<Garden::Soil>;
