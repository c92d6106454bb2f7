// The base of schema packages: creates and registers meta objects.
#pragma once

#include <quay/zero/meta/registry.h>

#include <boost/uuid/uuid.hpp>
#include <string>

namespace quay::zero::meta {

/// Creates meta objects in the registry's model, which must be thawed. Ids from tables are given as text; a text that
/// is no id raises std::runtime_error, an id in use UniquenessConstraint.
class QUAY_ZERO_API AbstractMetaPackage {
public:
    AbstractMetaPackage(AbstractMetaPackage const&) = delete;
    AbstractMetaPackage& operator=(AbstractMetaPackage const&) = delete;

protected:
    AbstractMetaPackage() = default;
    ~AbstractMetaPackage() = default;

    static Package createPackage(std::u16string const& uri, std::u16string const& name);
    static Class createClass(std::u16string const& name, std::string const& scriptName, bool isAbstract,
                             std::string const& id);
    static DataType createDataType(std::u16string const& name, std::string const& scriptName, std::string const& id);
    static Enum createEnum(std::u16string const& name, std::string const& id);
    static EnumLiteral createEnumLiteral(std::u16string const& name, int value, std::string const& id);
    static Property createProperty(std::u16string const& name, ValueFlags flags, bool isComposite,
                                   std::string const& id);
    static Operation createOperation(std::u16string const& name, boost::uuids::uuid const& id);
    static Argument createArgument(std::u16string const& name, boost::uuids::uuid const& id);
    static void setPropertyIndex(Property const& property, int index);
    static void registerRootPackage(Package const& package);
    static void unregisterRootPackage(std::u16string const& uri);
};

}  // namespace quay::zero::meta
