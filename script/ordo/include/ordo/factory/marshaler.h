// Copying of native values that scripts hold as objects.
#pragma once

#include <memory>

namespace ordo::factory {

/// The policy of data types: each script object holds a copy.
struct DataTypePolicy {
    template <class T>
    static void* copy(void const* value) {
        return std::make_unique<T>(*static_cast<T const*>(value)).release();
    }
};

template <class Policy>
struct Marshaler {
    /// Makes another `T`, which the caller deletes.
    template <class T>
    static void* copier(void const* value) {
        return Policy::template copy<T>(value);
    }
};

}  // namespace ordo::factory
