// Texts: char arrays, whose elements are UTF-16 units, and `string` objects, whose elements are texts. Units
// are kept as they are, NULs and surrogates without their other half included.
#pragma once

#include <zx/array.h>

#include <string>

/// Char row vectors of a text; an empty text gives a 0 by 0 array. Narrow texts are UTF-8, in which each part
/// that isn't well formed is read as U+FFFD.
QUAY_ZERO_API zxArray* zxCreateString(std::string_view text);
QUAY_ZERO_API zxArray* zxCreateString_UTF8(std::string_view text);
QUAY_ZERO_API zxArray* zxCreateString_UTF16(std::u16string_view text);

/// One `string` object.
QUAY_ZERO_API zxArray* zxCreateStringObject(std::u16string_view text);
/// `string` objects that are empty texts at first.
QUAY_ZERO_API zxArray* zxCreateStringObjectArray(std::span<std::size_t const> dimensions);

/// One of an array's `string` objects; the text is valid until that object is set.
QUAY_ZERO_API std::u16string_view zxGetStringElement(zxArray const* array, std::size_t index);
QUAY_ZERO_API void zxSetStringElement(zxArray* array, std::size_t index, std::u16string_view text);

/// Whether the array is one text: a char array of any shape, or exactly one `string` object. False for null.
QUAY_ZERO_API bool zxIsText(zxArray const* array) noexcept;

/// The text as UTF-8, U+FFFD for a surrogate without its other half, and a NUL behind it, to be released by
/// zxFree; null if the array isn't one text. `length`, if given, gets the bytes before the last NUL.
QUAY_ZERO_API char* zxArrayToString_UTF8(zxArray const* array, std::size_t* length = nullptr);
/// Releases what zxArrayToString_UTF8 gave; null is fine.
QUAY_ZERO_API void zxFree(void* memory) noexcept;

namespace zx {

/// The units of a text, column by column if a char array has several rows; valid until the array is written. Throws
/// std::invalid_argument if the array isn't one text.
QUAY_ZERO_API std::u16string_view textOf(zxArray const* array);

/// The units of a text as UTF-8, as in zxArrayToString_UTF8.
QUAY_ZERO_API std::string utf8Of(zxArray const* array);

}  // namespace zx
