// Type tables: the data types that one model knows, by number and by name.
#pragma once

#include <typesys/data_type.h>
#include <typesys/export.h>

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace VWTypeSys {

/// The id of the table's first entry, which stands for a type that is inherited.
inline constexpr int inheritedId = -1;
/// The built-in that isn't a number but has a name worth keeping. The one after it, "event", hasn't.
inline constexpr int pointerId = 11;
/// What is given in place of an id where there is none and that is no error.
inline constexpr int notRegistered = -10;

/// A type table. It starts with the inherited type and the built-ins; others get the next id as they are added, and
/// none ever goes. One thread at a time changes a table. References to entries stay good. All that adds throws
/// InvalidName for a name that is empty or has a NUL in it, NameInUse, and NoSuchId for an id that isn't in the table.
class TYPESYS_API DataTypeTable {
public:
    DataTypeTable();
    DataTypeTable(DataTypeTable const&) = delete;  // the index refers to the entries
    DataTypeTable& operator=(DataTypeTable const&) = delete;

    /// All entries; that of an id stands at position id + 1.
    std::deque<DataType> const& types() const noexcept { return types_; }
    bool contains(int id) const noexcept;
    /// The entry of an id. Throws NoSuchId.
    DataType const& get(int id) const;
    /// The id of a name as getName gives it. Looking up is hashing.
    std::optional<int> find(std::string_view name) const;

    int addAlias(std::string_view name, int of);
    int addEnumeration(std::string_view name) { return add(name, Category::Enumeration); }
    int addBus(std::string_view name) { return add(name, Category::Bus); }
    int addImage(std::string_view name) { return add(name, Category::Image); }
    int addOpaque(std::string_view name) { return add(name, Category::Opaque); }
    int addCustom(std::string_view name) { return add(name, Category::Custom); }
    /// A string type, named by its expression: "string", or "string(20)" for at most 20 characters. InvalidStringType.
    int addString(std::string_view expression);
    /// A number, named by its constructor text. InvalidFixedPointType.
    int addFixedPoint(fxpDataTypeProp const& type);
    /// Adds the type of `id` once more, under its name with the override before it. CannotOverride for built-ins,
    /// numbers and strings, whose names aren't given by anybody, and for what is overridden already.
    int addOverride(int id, Override by);
    /// The id under which this table has the type of that id in `source`, which is added, with what it is an alias of,
    /// unless its name is there. NameInUse if the name is there for something else.
    int addCopy(DataTypeTable const& source, int id);

private:
    int add(std::string_view name, Category category);
    int append(DataType type);

    std::deque<DataType> types_;
    std::unordered_map<std::string_view, int> ids_;  // by the entries' own names
};

/// What is particular to image types.
class TYPESYS_API ImageDataType {
public:
    /// The id of the image type of that name, or notRegistered.
    static int ImageNameToDataTypeId(std::string const& name, DataTypeTable* table);
};

}  // namespace VWTypeSys

/// Whether the table has a type of that id. All of these answer false, or an empty text, for a null table and for an id
/// that the table doesn't have.
TYPESYS_API bool DtIsDataTypeIdValid(VWTypeSys::DataTypeTable const* table, int id);
TYPESYS_API bool DtIsAliasType(VWTypeSys::DataTypeTable const* table, int id);
TYPESYS_API bool DtIsImageType(VWTypeSys::DataTypeTable const* table, int id);
/// The expression of a string type, or of the one that an alias stands for.
TYPESYS_API std::string DtGetStringDataTypeExpression(VWTypeSys::DataTypeTable const* table, int id);
