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

    /// Makes the value; throws if the given one has no counterpart.
    virtual zx::Array convert(zxArray const* value) = 0;

protected:
    OrdoTypeConverter() = default;
};

/// The process's table of conversions, keyed by two type words. Besides the names of classes, the words "C property"
/// and "C scalar" name what a property or a single place of class C takes.
class ORDO_API OrdoTypeRepository {
public:
    OrdoTypeRepository() = delete;

    /// Finds a conversion, which the table keeps owning; null if there is none.
    static OrdoTypeConverter* getConversion(InternedName from, InternedName to);
    /// Removes a conversion and returns it; null if there is none.
    static std::unique_ptr<OrdoTypeConverter> removeConversion(InternedName from, InternedName to);
    /// Adds a conversion and replaces the one of the same types.
    static void addConversion(InternedName from, InternedName to, std::unique_ptr<OrdoTypeConverter> conversion);
};

}  // namespace ordo
