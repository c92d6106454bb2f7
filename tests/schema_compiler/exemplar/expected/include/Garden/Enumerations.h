// Generated from package.yaml and the files that it lists. Changes belong there.
#pragma once

namespace Garden {

/// What a bed is filled with.
enum class Soil : int {
  /// Ordinary garden soil.
  Loam = 0,
  /// Drains quickly.
  Sand = 1,
};

}  // namespace Garden
