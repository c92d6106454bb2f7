// Conversions between types of values, by the words that name the types.
#pragma once

#include <ordo/export.h>
#include <ordo/interned.h>

#include <zx/array.h>

#include <memory>

namespace ordo {

/// Makes a value of one type from a value of another.
class ORDO_API OrdoTypeConverter {
public:
    OrdoTypeConverter(OrdoTypeConverter const&) = delete;
    OrdoTypeConverter& operator=(OrdoTypeConverter const&) = delete;
    virtual ~OrdoTypeConverter();

    /// Throws if the value has no counterpart.
    virtual zx::Array convert(zxArray const* value) = 0;

protected:
    OrdoTypeConverter() = default;
};

/// The process's table of conversions, keyed by two type words. Beside classes themselves, the words "C property" and
/// "C scalar" name what a property or a single place of class C takes.
class ORDO_API OrdoTypeRepository {
public:
    OrdoTypeRepository() = delete;

    /// Null if there is none. It stays the table's.
    static OrdoTypeConverter* getConversion(InternedName from, InternedName to);
    /// Takes a conversion out, null if there is none.
    static std::unique_ptr<OrdoTypeConverter> removeConversion(InternedName from, InternedName to);
    /// Puts a conversion in, in place of any there was.
    static void addConversion(InternedName from, InternedName to, std::unique_ptr<OrdoTypeConverter> conversion);
};

}  // namespace ordo
