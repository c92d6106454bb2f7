// Cells and structs: arrays whose elements are arrays.
#pragma once

#include <zx/array.h>

#include <optional>

// Both kinds own their elements. A setter takes over its array, which mustn't be an element of another one, and
// releases the former one. Null stands for a 0 by 0 double array, which is also what an unset element reads as. The
// result of a getter belongs to the owner and is valid until that place is set again. An array that was got for writing
// can be written at any time; its owner counts as written with it.

QUAY_ZERO_API zxArray* zxCreateCellMatrix(std::size_t rows, std::size_t columns);
QUAY_ZERO_API zxArray* zxCreateCellArray(std::span<std::size_t const> dimensions);

QUAY_ZERO_API zxArray const* zxGetCell(zxArray const* array, std::size_t index);
QUAY_ZERO_API zxArray* zxGetCellForWriting(zxArray* array, std::size_t index);
QUAY_ZERO_API void zxSetCell(zxArray* array, std::size_t index, zxArray* value);

/// Structs without fields. Each element of a struct array has the same fields. Fields keep the order in which they are
/// added; their names aren't empty and all different. Fields are found by comparing names, or by hashing if there are
/// many.
QUAY_ZERO_API zxArray* zxCreateStructMatrix(std::size_t rows, std::size_t columns);
QUAY_ZERO_API zxArray* zxCreateStructArray(std::span<std::size_t const> dimensions);

QUAY_ZERO_API std::size_t zxGetNumberOfFields(zxArray const* array);
/// The text is valid until a field is added or removed.
QUAY_ZERO_API std::string_view zxGetFieldName(zxArray const* array, std::size_t number);
QUAY_ZERO_API std::optional<std::size_t> zxFindField(zxArray const* array, std::string_view name);
/// Adds a field unless it is there, and gives its number.
QUAY_ZERO_API std::size_t zxAddField(zxArray* array, std::string_view name);
/// Removes a field. Returns whether there was one.
QUAY_ZERO_API bool zxRemoveField(zxArray* array, std::string_view name);

/// Null if there is no such field.
QUAY_ZERO_API zxArray const* zxGetField(zxArray const* array, std::size_t index, std::string_view name);
QUAY_ZERO_API zxArray* zxGetFieldForWriting(zxArray* array, std::size_t index, std::string_view name);
/// Adds the field if it isn't there.
QUAY_ZERO_API void zxSetField(zxArray* array, std::size_t index, std::string_view name, zxArray* value);

QUAY_ZERO_API zxArray const* zxGetFieldByNumber(zxArray const* array, std::size_t index, std::size_t number);
QUAY_ZERO_API void zxSetFieldByNumber(zxArray* array, std::size_t index, std::size_t number, zxArray* value);
