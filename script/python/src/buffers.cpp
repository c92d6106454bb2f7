#include "buffers.h"

#include "errors.h"
#include "text.h"

#include <ordo/error.h>

#include <zx/values.h>

#include <array>
#include <bit>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace host {
namespace {

struct Format {
    zxClassCode classCode;
    bool isComplex;
    std::size_t size;  // of one element
};

/// The array class for a format of the `struct` module; size 0 if the format isn't supported.
Format formatOf(Py_buffer const& buffer) {
    std::string_view text = buffer.format != nullptr ? buffer.format : "B";
    constexpr std::string_view own = std::endian::native == std::endian::little ? "@=<" : "@=>!";
    if (!text.empty() && own.find(text.front()) != std::string_view::npos) {
        text.remove_prefix(1);
    }
    bool const isComplex = text.size() == 2 && text.front() == 'Z';
    if (isComplex) {
        text.remove_prefix(1);
    }
    Format result{zxDoubleClass, isComplex, 0};
    auto const itemSize = static_cast<std::size_t>(buffer.itemsize);
    std::size_t const partSize = isComplex ? itemSize / 2 : itemSize;
    if (text.size() != 1 || (isComplex && text != "d" && text != "f")) {
        return result;
    }
    auto const integer = [&](zxClassCode smallest) {
        // Sizes of C types differ between machines, so the item size decides which integer type it is.
        unsigned const step = partSize == 1 ? 0 : partSize == 2 ? 2 : partSize == 4 ? 4 : 6;
        result.classCode = static_cast<zxClassCode>(smallest + step);
        result.size = partSize <= 8 ? itemSize : 0;
    };
    constexpr std::string_view signedCodes = "bhilqn";
    constexpr std::string_view unsignedCodes = "BHILQN";
    if (text == "d" || text == "f") {
        result.classCode = text == "d" ? zxDoubleClass : zxSingleClass;
        result.size = itemSize;
    } else if (text == "?") {
        result.classCode = zxLogicalClass;
        result.size = itemSize;
    } else if (signedCodes.find(text.front()) != std::string_view::npos) {
        integer(zxInt8Class);
    } else if (unsignedCodes.find(text.front()) != std::string_view::npos) {
        integer(zxUint8Class);
    }
    return result;
}

/// NumPy's name of the element type, such as "float64", ">f8" or "datetime64[D]"; empty for objects of other libraries.
std::string dtypeOf(PyObject* object) {
    std::string text;
    PyObject* const dtype = PyObject_GetAttrString(object, "dtype");
    PyObject* const told = dtype != nullptr ? PyObject_Str(dtype) : nullptr;
    if (told != nullptr) {
        text = nameFromPython(told);
    }
    Py_XDECREF(told);
    Py_XDECREF(dtype);
    PyErr_Clear();
    return text;
}

[[noreturn]] void refuse(PyObject* object) {
    std::string const dtype = dtypeOf(object);
    std::string const text = describeObject(object) + (dtype.empty() ? "" : " with dtype '" + dtype + "'");
    ordo::raiseWith(ordo::failures::WrongType, {text, "a value or an array of numbers"});
}

/// Whether the object is a single date or time span of NumPy's; these export their memory as bytes.
bool isTime(PyObject* object, Format const& format) {
    if (format.classCode != zxUint8Class) {
        return false;
    }
    std::string const dtype = dtypeOf(object);
    return dtype.starts_with("datetime64") || dtype.starts_with("timedelta64");
}

/// Throws if the object is an array with masked elements, which have no values.
void checkMask(PyObject* object) {
    // An object can be a masked array only if NumPy's module for them has been imported.
    PyObject* const module = PyDict_GetItemString(PyImport_GetModuleDict(), "numpy.ma");
    if (module == nullptr) {
        return;
    }
    Ref const masked(PyObject_GetAttrString(module, "MaskedArray"));
    if (checked(PyObject_IsInstance(object, masked.get())) == 0) {
        return;
    }
    Ref const isMasked(PyObject_CallMethod(module, "is_masked", "O", object));
    if (checked(PyObject_IsTrue(isMasked.get())) != 0) {
        ordo::raiseWith(ordo::failures::WrongType, {"an array with masked elements", "a value or an array of numbers"});
    }
}

/// A view of an object's memory, released by the destructor.
class View {
public:
    explicit View(PyObject* object) {
        if (PyObject_GetBuffer(object, &buffer_, PyBUF_FULL_RO) != 0) {
            if (PyErr_ExceptionMatches(PyExc_MemoryError) != 0 || PyErr_ExceptionMatches(PyExc_Exception) == 0) {
                throw PythonError();
            }
            PyErr_Clear();
            refuse(object);
        }
        strided_ = buffer_;
        if (buffer_.strides == nullptr && buffer_.ndim <= PyBUF_MAX_NDIM) {
            // Without strides the elements are contiguous, in row-major order.
            Py_ssize_t step = buffer_.itemsize;
            for (int d = buffer_.ndim - 1; d >= 0; --d) {
                strides_[static_cast<std::size_t>(d)] = step;
                step *= buffer_.shape[d];
            }
            strided_.strides = strides_.data();
        }
    }
    View(View const&) = delete;
    View& operator=(View const&) = delete;
    ~View() { PyBuffer_Release(&buffer_); }

    Py_buffer const& operator*() const { return strided_; }
    Py_buffer const* operator->() const { return &strided_; }

private:
    Py_buffer buffer_{};   // as the object filled it, for releasing it
    Py_buffer strided_{};  // a copy with strides filled in
    std::array<Py_ssize_t, PyBUF_MAX_NDIM> strides_{};
};

/// Copies the elements in column-major order.
void copyElements(Py_buffer const& from, std::size_t size, char* to, std::size_t count) {
    std::array<Py_ssize_t, PyBUF_MAX_NDIM> place{};
    for (std::size_t i = 0; i < count; ++i) {
        std::memcpy(to + i * size, PyBuffer_GetPointer(&from, place.data()), size);
        for (int d = 0; d < from.ndim; ++d) {
            if (++place[static_cast<std::size_t>(d)] < from.shape[d]) {
                break;
            }
            place[static_cast<std::size_t>(d)] = 0;
        }
    }
}

}  // namespace

zx::Array arrayFromBuffer(PyObject* object) {
    checkMask(object);
    View const view(object);
    Format const format = formatOf(*view);
    if (format.size == 0 || view->ndim > PyBUF_MAX_NDIM || isTime(object, format)) {
        refuse(object);
    }
    std::vector<std::size_t> dimensions;
    if (view->ndim < 2) {
        dimensions.push_back(1);
    }
    if (view->ndim == 0) {
        dimensions.push_back(1);
    }
    std::size_t count = 1;
    for (int d = 0; d < view->ndim; ++d) {
        dimensions.push_back(static_cast<std::size_t>(view->shape[d]));
        count *= dimensions.back();
    }
    zx::Array array(zxCreateNumericArray(dimensions, format.classCode, format.isComplex ? 1 : 0));
    if (count == 0) {
        return array;
    }
    auto* const data = static_cast<char*>(zxGetDataForWriting(array.get()));
    copyElements(*view, format.size, data, count);
    if (format.classCode == zxLogicalClass) {
        // Only 0 and 1 are logical values; the source memory may hold other bytes.
        for (std::size_t i = 0; i < count; ++i) {
            data[i] = data[i] != 0 ? 1 : 0;
        }
    }
    return array;
}

}  // namespace host
