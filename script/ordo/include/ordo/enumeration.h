// Literals of enumeration classes.
#pragma once

#include <ordo/export.h>
#include <ordo/interned.h>

#include <zx/array.h>

#include <cstdint>
#include <string_view>

namespace ordo {

class OrdoClass;

/// One literal. Enumeration classes are based on the built-in class int32.
class ORDO_API OrdoEnumInfo {
public:
    OrdoEnumInfo(OrdoEnumInfo const&) = delete;
    OrdoEnumInfo& operator=(OrdoEnumInfo const&) = delete;
    virtual ~OrdoEnumInfo();

    virtual InternedName getName() const noexcept = 0;
    virtual OrdoClass& getClass() const noexcept = 0;
    virtual std::int32_t getNumericValue() const noexcept = 0;
    /// The value as an object array of the class; the literal keeps owning it.
    virtual zxArray const* getValue() = 0;
    virtual std::string_view getDescription() const noexcept { return {}; }

protected:
    OrdoEnumInfo() = default;
};

}  // namespace ordo
