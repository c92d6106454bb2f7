// The export mark of libquay_zero: the four rooms that make it up (keel, zx, runtime, elements) share this
// one. Everything else in the library is hidden.
#pragma once

#define QUAY_ZERO_API [[gnu::visibility("default")]]
