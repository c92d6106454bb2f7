// Conversion of exceptions to diagnostics.
#pragma once

#include <typesys/diagnostic.h>

namespace VWTypeSys {

/// Runs `work` and returns null, or a diagnostic if the type system failed. Other exceptions pass through.
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
