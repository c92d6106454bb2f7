// One entry of a type table.
#pragma once

#include <typesys/export.h>
#include <typesys/fixed_point.h>

#include <cstdint>
#include <optional>
#include <string>

namespace VWTypeSys {

/// The category of an entry. An alias has the category of the type that it stands for.
enum class Category : std::int32_t {
    Inherited = 0,
    BuiltIn = 1,
    FixedPoint = 2,
    Enumeration = 3,
    Bus = 4,
    Opaque = 5,
    String = 6,
    Image = 7,
    Custom = 8
};

/// What an override has replaced a type's numbers with. Its prefix stands before the type's name: "dto_double_Engine".
enum class Override { Double, Single, ScaledDouble };

/// A data type. Only a DataTypeTable makes them.
class TYPESYS_API DataType {
public:
    /// The name. NUL-terminated, and contains no NUL before its end.
    char const* getName() const noexcept { return name_.c_str(); }
    /// The name without the prefix of the override, if the type was made by one.
    std::string getNameStripDTOPrefix() const { return name_.substr(prefixLength_); }

    Category category() const noexcept { return category_; }
    /// The id of the type that an alias stands for; empty for other types.
    std::optional<int> aliasOf() const noexcept { return aliasOf_; }
    bool isAlias() const noexcept { return aliasOf_.has_value(); }
    bool isNumeric() const noexcept { return number_.has_value(); }
    bool isOpaque() const noexcept { return category_ == Category::Opaque; }

    /// The number of a numeric type; throws std::bad_optional_access for others.
    fxpDataTypeProp const& getFxpDataTypeProp() const { return number_.value(); }
    /// The expression of a string type; empty for others.
    std::string const& expression() const noexcept { return expression_; }

private:
    friend class DataTypeTable;
    DataType(std::string name, Category category) : name_(std::move(name)), category_(category) {}

    std::string name_;
    Category category_;
    std::optional<int> aliasOf_;
    std::optional<fxpDataTypeProp> number_;
    std::string expression_;
    std::size_t prefixLength_ = 0;
};

}  // namespace VWTypeSys
