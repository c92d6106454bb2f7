// Script packages with a dotted name.
#pragma once

#include <quay/zero/mi/meta_marshaler_registry.h>

#include <ordo/package.h>

#include <memory>
#include <string>
#include <string_view>

namespace quay::zero::mi {

/// A script package with a parent path. It also stands in for outer packages that aren't registered.
class ORDO_API EmptyParentPackage : public ordo::OrdoPackageInfo {
public:
    class Registrar;

    /// The text behind the last dot is the name, the text before it the parent path. Without a dot, the whole text is
    /// the name.
    explicit EmptyParentPackage(std::string_view dottedName);

    std::string_view getName() const noexcept override { return name_; }
    std::string const& parentPath() const noexcept { return parentPath_; }

    /// Adds a package to the tree, below its parent, which is created if it doesn't exist. Every call adds the
    /// description: if the name is taken, the existing package is initialized with this description as well.
    static ordo::OrdoPackage* registerPackage(std::unique_ptr<EmptyParentPackage> package);

private:
    std::string name_;
    std::string parentPath_;
};

/// Libraries register their marshalers through this class.
class ORDO_API EmptyParentPackage::Registrar {
public:
    static void registerTypeMarshaler(meta::Type const& type, std::unique_ptr<ValueMarshaler> marshaler) {
        MetaMarshalerRegistry::getInstance().registerTypeMarshaler(type, std::move(marshaler));
    }
    static void unregisterTypeMarshaler(meta::Type const& type) noexcept {
        MetaMarshalerRegistry::getInstance().unregisterTypeMarshaler(type);
    }
};

}  // namespace quay::zero::mi
