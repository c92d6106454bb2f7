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
/// The id of the built-in "pointer", the only one that isn't a number but is recorded by name. The next, "event",
/// isn't.
inline constexpr int pointerId = 11;
/// Stands for an id where there is none and that isn't an error.
inline constexpr int notRegistered = -10;

/// A type table. It starts with the inherited type and the built-ins; types that are added get the next id, and none is
/// ever removed. One thread at a time may change a table. References to entries stay valid. All functions that add a
/// type throw InvalidName for a name that is empty or contains a NUL, NameInUse, and NoSuchId for an id that isn't in
/// the table.
class TYPESYS_API DataTypeTable {
public:
    DataTypeTable();
    DataTypeTable(DataTypeTable const&) = delete;  // the index refers to the entries
    DataTypeTable& operator=(DataTypeTable const&) = delete;

    /// All entries; the entry with a given id is at position id + 1.
    std::deque<DataType> const& types() const noexcept { return types_; }
    bool contains(int id) const noexcept;
    /// The entry with this id. Throws NoSuchId.
    DataType const& get(int id) const;
    /// The id of the type whose getName gives this name. A hash look-up.
    std::optional<int> find(std::string_view name) const;

    int addAlias(std::string_view name, int of);
    int addEnumeration(std::string_view name) { return add(name, Category::Enumeration); }
    int addBus(std::string_view name) { return add(name, Category::Bus); }
    int addImage(std::string_view name) { return add(name, Category::Image); }
    int addOpaque(std::string_view name) { return add(name, Category::Opaque); }
    int addCustom(std::string_view name) { return add(name, Category::Custom); }
    /// Adds a string type, named by its expression: "string", or "string(20)" for at most 20 characters. Throws
    /// InvalidStringType.
    int addString(std::string_view expression);
    /// Adds a number, named by its constructor text. Throws InvalidFixedPointType.
    int addFixedPoint(fxpDataTypeProp const& type);
    /// Adds an override of the type `id`, named by the override's prefix and that type's name. Throws CannotOverride
    /// for built-ins, numbers and strings, whose names aren't chosen by users, and for types that are overrides
    /// already.
    int addOverride(int id, Override by);
    /// Adds the type `id` of `source`, and the type that it is an alias of, unless this table has its name already;
    /// returns the id in this table. Throws NameInUse if the name belongs to a different type.
    int addCopy(DataTypeTable const& source, int id);

private:
    int add(std::string_view name, Category category);
    int append(DataType type);

    std::deque<DataType> types_;
    std::unordered_map<std::string_view, int> ids_;  // the keys refer to the entries' names
};

/// Operations of image types.
class TYPESYS_API ImageDataType {
public:
    /// The id of the image type with this name, or notRegistered.
    static int ImageNameToDataTypeId(std::string const& name, DataTypeTable* table);
};

}  // namespace VWTypeSys

/// Whether the table has a type with this id. All of these functions return false, or an empty text, for a null table
/// and for an id that the table doesn't have.
TYPESYS_API bool DtIsDataTypeIdValid(VWTypeSys::DataTypeTable const* table, int id);
TYPESYS_API bool DtIsAliasType(VWTypeSys::DataTypeTable const* table, int id);
TYPESYS_API bool DtIsImageType(VWTypeSys::DataTypeTable const* table, int id);
/// The expression of a string type, or of the one that an alias stands for.
TYPESYS_API std::string DtGetStringDataTypeExpression(VWTypeSys::DataTypeTable const* table, int id);
