// The text of a failure, for comparison.
#pragma once

#include <keel/exception.h>

#include <string>
#include <utility>

/// The identifier and sentence of what `f` throws; "none" if it throws nothing.
template <class F>
std::string sentenceOf(F&& f) {
    try {
        std::forward<F>(f)();
    } catch (keel::core::except::Error const& error) {
        return error.what();
    }
    return "none";
}
