// Registration of script classes: those of the runtime, and those of any schema.
#pragma once

#include <quay/zero/mi/empty_parent_package.h>

#include <quay/zero/meta/types.h>

#include <string>
#include <string_view>

namespace quay::zero::mi {

/// Registers the packages "quay.zero" and "quay.zero.meta". Further calls do nothing.
ORDO_API void registerRuntimeClasses();

/// The script package of a schema's types whose script names begin with the package's name: first the classes, then the
/// enumerations, then the data types, each in the order of the schema. The descriptions hold names only and don't refer
/// to the library that declared the schema, so the package can outlive that library.
class ORDO_API SchemaPackage : public EmptyParentPackage {
public:
    SchemaPackage(std::string_view dottedName, meta::Package const& root);

    void initializePackage(ordo::OrdoPackage* package) override;

private:
    std::string dottedName_;
    meta::Package root_;
};

/// Registers the script packages of a schema, and marshalers of its enumerations and data types, unless they are
/// registered already. For schemas whose own libraries don't register them.
ORDO_API void registerSchema(meta::Package const& root);

/// A marshaler for an enumeration or a data type.
ORDO_API std::unique_ptr<ValueMarshaler> makeMarshaler(meta::Type const& type);

}  // namespace quay::zero::mi
