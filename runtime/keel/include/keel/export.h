// The export mark of libquay_zero: the modules that make it up share this
// one. Everything else in the library is hidden.
#pragma once

#define QUAY_ZERO_API [[gnu::visibility("default")]]
