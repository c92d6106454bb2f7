// From exceptions to diagnostics.
#pragma once

#include <typesys/diagnostic.h>

namespace VWTypeSys {

/// Runs `work` and gives null, or what the type system failed with as a diagnostic. Other exceptions pass through.
template <class Work>
vwsvDiagnosticImpl* reporting(Work&& work) {
    try {
        work();
        return nullptr;
    } catch (DataTypeException const& failure) {
        return new vwsvDiagnosticImpl(failure.message());
    }
}

}  // namespace VWTypeSys
