// Conversion to NumPy arrays. NumPy is imported when the first array is converted, since the import takes long.
#include "numpy_arrays.h"

#include <zx/values.h>

#define NPY_NO_DEPRECATED_API NPY_1_7_API_VERSION
#include <numpy/arrayobject.h>

#include <cstring>
#include <vector>

namespace host {
namespace {

bool isImported = false;

int typeNumberOf(zxArray const* array) {
    bool const isComplex = zxIsComplex(array);
    switch (zxGetClassCode(array)) {
        case zxLogicalClass:
            return NPY_BOOL;
        case zxSingleClass:
            return isComplex ? NPY_CFLOAT : NPY_FLOAT;
        case zxInt8Class:
            return NPY_INT8;
        case zxUint8Class:
            return NPY_UINT8;
        case zxInt16Class:
            return NPY_INT16;
        case zxUint16Class:
            return NPY_UINT16;
        case zxInt32Class:
            return NPY_INT32;
        case zxUint32Class:
            return NPY_UINT32;
        case zxInt64Class:
            return NPY_INT64;
        case zxUint64Class:
            return NPY_UINT64;
        default:
            return isComplex ? NPY_CDOUBLE : NPY_DOUBLE;
    }
}

}  // namespace

Ref numbersToPython(zxArray const* array) {
    if (!isImported) {
        // The import runs code of scripts and lets other threads run, which may replace the array, so copy it first.
        zx::Array const own = zx::copy(array);
        checked(_import_array());
        isImported = true;
        return numbersToPython(own.get());
    }
    std::vector<npy_intp> shape;
    for (std::size_t const extent : zxGetDimensions(array)) {
        shape.push_back(static_cast<npy_intp>(extent));
    }
    if (shape.size() == 2 && shape.front() == 1) {
        shape.erase(shape.begin());
    }
    // NumPy has no complex integers.
    if (zxIsComplex(array) && zxGetClassCode(array) != zxDoubleClass && zxGetClassCode(array) != zxSingleClass) {
        PyErr_SetString(PyExc_TypeError, "NumPy has no complex integers");
        throw PythonError();
    }
    Ref result(PyArray_EMPTY(static_cast<int>(shape.size()), shape.data(), typeNumberOf(array), 1));
    auto* const made = reinterpret_cast<PyArrayObject*>(result.get());
    std::memcpy(PyArray_DATA(made), zxGetData(array), static_cast<std::size_t>(PyArray_NBYTES(made)));
    return result;
}

}  // namespace host
