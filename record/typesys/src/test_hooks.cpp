#include <typesys/test_hooks.h>

constinit std::atomic<int> VWTH_OpaqueTypeFbt = 0;

char const* NameOfTypeForOpaqueTypeFbt() { return "opaque_under_test"; }
