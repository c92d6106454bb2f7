// What a sequence of bool needs beside <quay/zero/primitive_collection.h>.
#pragma once

#include <quay/zero/primitive_collection.h>

#include <boost/container/vector.hpp>

namespace quay::zero {

template <>
struct SequenceContainer<bool> {
    using Type = boost::container::vector<bool>;
};

}  // namespace quay::zero
