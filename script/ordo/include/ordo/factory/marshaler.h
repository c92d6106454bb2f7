// How native values that cross as objects of their own are copied.
#pragma once

#include <memory>

namespace ordo::factory {

/// Values that a script object holds a copy of.
struct DataTypePolicy {
    template <class T>
    static void* copy(void const* value) {
        return std::make_unique<T>(*static_cast<T const*>(value)).release();
    }
};

template <class Policy>
struct Marshaler {
    /// Makes another `T`, for the receiver to delete.
    template <class T>
    static void* copier(void const* value) {
        return Policy::template copy<T>(value);
    }
};

}  // namespace ordo::factory
