// Switches by which tests reach what is otherwise off.
#pragma once

#include <typesys/export.h>

#include <atomic>

/// Whether blocks may register the opaque type that the feature's tests use. Off, which is 0, at the start.
TYPESYS_API extern std::atomic<int> VWTH_OpaqueTypeFbt;

/// The name of that type.
TYPESYS_API char const* NameOfTypeForOpaqueTypeFbt();
