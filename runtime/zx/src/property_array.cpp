#include <zx/life.h>
#include <zx/property_array.h>

zxArray_tag* omCopyArrayForPropertyContainment(zxArray_tag const* array) { return zxDuplicateArray(array); }

void ordo::property_array_deleter(zxArray_tag* array) noexcept { zxDestroyArray(array); }
