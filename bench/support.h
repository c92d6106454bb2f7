// Functions that several benchmarks use.
#pragma once

#include <ModelRefInfoRepo/ModelRefInfoRepo.h>

#include <benchmark/benchmark.h>

#include <cstddef>

#include "floor.h"

namespace bench {

using namespace ModelRefInfoRepo;
namespace qz = quay::zero;

/// A model, or the floor's store, that keeps as many transactions in its history as the benchmark's first argument
/// says.
inline qz::Model makeModel(benchmark::State const& state) {
    qz::Model model = qz::Model::create();
    model->enableHistory(static_cast<std::size_t>(state.range(0)));
    return model;
}

inline void keepHistory(hand::Store& store, benchmark::State const& state) {
    store.keepHistory(static_cast<std::size_t>(state.range(0)));
}

}  // namespace bench
