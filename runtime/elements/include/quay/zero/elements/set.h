// Shape "set": sorted values, no duplicates.
#pragma once

#include <quay/zero/elements/values.h>

namespace quay::zero::elements {

template <class T>
class Set final : public Values<T, PrimitiveSet<T>> {
public:
    using Values<T, PrimitiveSet<T>>::Values;
};

}  // namespace quay::zero::elements
