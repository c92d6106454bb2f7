// Generated from package.yaml and the files that it lists. Changes belong there.
#pragma once

#include <quay/zero/meta/declared_package.h>

#include "Garden/export.h"

/// Every meta object of the Garden schema by name; brought up by the first call of getInstance.
class GARDEN_API MetaPackageGarden final : public quay::zero::meta::DeclaredPackage {
 public:
  /// The one instance, complete. The first call declares the schema in the meta registry, whichever thread comes first;
  /// others wait. Throws what the declaration throws; the next call then starts anew.
  static MetaPackageGarden* getInstance();
  /// The same for packages that build on this one, under the registry's mutex: if a transaction around the declaration
  /// took it back, the schema is declared anew.
  static void bringUp();

  quay::zero::meta::Package rootPackage;
  quay::zero::meta::Package Garden;

  quay::zero::meta::Class Bed;
  quay::zero::meta::Property Bed_label;
  quay::zero::meta::Property Bed_soil;
  quay::zero::meta::Property Bed_width;
  quay::zero::meta::Property Bed_widthInFeet;
  quay::zero::meta::Property Bed_plan;
  quay::zero::meta::Property Bed_waterings;
  quay::zero::meta::Property Bed_readings;
  quay::zero::meta::Property Bed_tags;
  quay::zero::meta::Property Bed_frame;
  quay::zero::meta::Property Bed_frames;
  quay::zero::meta::Property Bed_supports;
  quay::zero::meta::Property Bed_plants;
  quay::zero::meta::Property Bed_byHeight;

  quay::zero::meta::Class Frame;
  quay::zero::meta::Property Frame_isOpen;

  quay::zero::meta::Class Plant;
  quay::zero::meta::Property Plant_name;
  quay::zero::meta::Property Plant_height;

  quay::zero::meta::Class RaisedBed;
  quay::zero::meta::Property RaisedBed_legs;

  quay::zero::meta::Class Stake;

  quay::zero::meta::Class Support;
  quay::zero::meta::Property Support_height;

  quay::zero::meta::PrimitiveType StdString;
  quay::zero::meta::PrimitiveType ZxArray;

  quay::zero::meta::Enum Soil;
  quay::zero::meta::EnumLiteral Soil_Loam;
  quay::zero::meta::EnumLiteral Soil_Sand;

 private:
  MetaPackageGarden();
  void initialize();
  void instantiate_Garden(quay::zero::meta::MetaRegistry* registry);
  void weave_Garden(quay::zero::meta::MetaRegistry* registry, quay::zero::meta::PropertySerializerRegistry* serializers);
};
