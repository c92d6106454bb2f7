// The array type by name, and the numbers and options that describe arrays.
#pragma once

struct zxArray_tag;
using zxArray = zxArray_tag;

/// What an array's elements are. The numbers are known outside; 5 isn't used.
enum zxClassCode : unsigned {
    zxCellClass = 1,
    zxStructClass = 2,
    zxLogicalClass = 3,
    zxCharClass = 4,  ///< UTF-16 units
    zxDoubleClass = 6,
    zxSingleClass = 7,
    zxInt8Class = 8,
    zxUint8Class = 9,
    zxInt16Class = 10,
    zxUint16Class = 11,
    zxInt32Class = 12,
    zxUint32Class = 13,
    zxInt64Class = 14,
    zxUint64Class = 15,
    zxObjectFlag = 16,
    zxObjectClass = zxObjectFlag | zxStructClass,  ///< objects of a named class, `string` objects included
};

/// How zxIsEqual compares two NaNs.
enum class zxNanRule {
    Differ,  ///< not equal, like `==` on numbers
    Same,    ///< equal, whatever their bits
};
