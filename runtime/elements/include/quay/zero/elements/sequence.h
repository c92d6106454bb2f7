// Shape "sequence": values in order, duplicates allowed.
#pragma once

#include <quay/zero/elements/values.h>

namespace quay::zero::elements {

template <class T>
class Sequence final : public Values<T, PrimitiveSequence<T>> {
public:
    using Values<T, PrimitiveSequence<T>>::Values;
};

}  // namespace quay::zero::elements
