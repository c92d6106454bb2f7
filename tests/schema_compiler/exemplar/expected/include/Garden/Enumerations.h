// Generated from package.yaml and the files that it lists. Changes belong there.
#pragma once

#include <quay/zero/type_traits.h>

#include "Garden/export.h"

namespace Garden {

/// What a bed is filled with.
enum class Soil : int {
  /// Ordinary garden soil.
  Loam = 0,
  /// Drains quickly.
  Sand = 1,
};

}  // namespace Garden

template <>
struct GARDEN_API quay::zero::TypeOf<Garden::Soil> {
  static quay::zero::meta::Type const& type();
};
