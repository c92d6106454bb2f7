// The array as a name, and the words that describe one.
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

/// How zxIsEqual takes two NaNs that meet.
enum class zxNanRule {
    Differ,  ///< as `==` does on numbers
    Same,    ///< as it takes two zeros: whatever the bits
};
