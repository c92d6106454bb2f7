// How script classes come into being: those of the runtime, and those of any schema.
#pragma once

#include <quay/zero/mi/empty_parent_package.h>

#include <quay/zero/meta/types.h>

#include <string>
#include <string_view>

namespace quay::zero::mi {

/// Registers the packages "quay.zero" and "quay.zero.meta". Further calls do nothing.
ORDO_API void registerRuntimeClasses();

/// The script package of a schema's types whose script names begin with its own name: the classes first, then the
/// enumerations, then the data types, each in the order in which the schema declares them. Descriptions are a name each
/// and don't refer to the library that declared the schema, so the package outlives that. It adds no data of its own
/// to what EmptyParentPackage has but the schema's package.
class ORDO_API SchemaPackage : public EmptyParentPackage {
public:
    SchemaPackage(std::string_view dottedName, meta::Package const& root);

    void initializePackage(ordo::OrdoPackage* package) override;

private:
    std::string dottedName_;
    meta::Package root_;
};

/// Registers the script packages of a schema, and marshalers of its enumerations and data types, as far as they aren't
/// there. For schemas whose libraries know no scripts.
ORDO_API void registerSchema(meta::Package const& root);

/// A marshaler for an enumeration or a data type.
ORDO_API std::unique_ptr<ValueMarshaler> makeMarshaler(meta::Type const& type);

}  // namespace quay::zero::mi
