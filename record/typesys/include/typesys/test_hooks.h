// Switches by which tests enable what is disabled otherwise.
#pragma once

#include <typesys/export.h>

#include <atomic>

/// Whether blocks may register the opaque type that tests of the feature use. Initially 0, disabled.
TYPESYS_API extern std::atomic<int> VWTH_OpaqueTypeFbt;

/// The name of the opaque type.
TYPESYS_API char const* NameOfTypeForOpaqueTypeFbt();
