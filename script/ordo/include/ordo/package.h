// Packages: the tree of names in which scripts find classes.
#pragma once

#include <ordo/class_info.h>
#include <ordo/export.h>
#include <ordo/interned.h>

#include <span>
#include <string_view>
#include <vector>

namespace ordo {

class OrdoClass;
class OrdoMethodInfo;
class OrdoPackage;
struct PackageTree;

/// A package as its creator describes it. Registrations are never reverted.
class ORDO_API OrdoPackageInfo {
public:
    OrdoPackageInfo() = default;
    OrdoPackageInfo(OrdoPackageInfo const&) = delete;
    OrdoPackageInfo& operator=(OrdoPackageInfo const&) = delete;
    virtual ~OrdoPackageInfo();

    /// The last component of the dotted name.
    virtual std::string_view getName() const noexcept = 0;
    virtual std::string_view getDescription() const noexcept { return {}; }
    virtual std::string_view getDetailedDescription() const noexcept { return {}; }

    // The attemptToLoad functions are called when a member isn't found: the package may register it then, and returns
    // whether it did. The name is valid during the call; to keep it, intern its text.

    virtual bool attemptToLoadSubPackage(InternedName) { return false; }
    /// Called when a name is defined that exists already; by default it does nothing, which accepts the definition.
    virtual void throwErrorForDefinitionOfExistingName(InternedName) {}
    virtual bool attemptToLoadClass(InternedName) { return false; }
    virtual bool attemptToLoadFunction(InternedName) { return false; }
    virtual bool attemptToLoadType(InternedName) { return false; }
    virtual OrdoMethodInfo* getMethodSelector() { return nullptr; }

    /// Called once, when the package has been added to the tree, to register its classes.
    virtual void initializePackage(OrdoPackage*) {}

    virtual bool isDestructible() const noexcept { return false; }
    virtual bool isLocked() const noexcept { return false; }
    virtual std::string_view getSummaryLine() const noexcept { return getDescription(); }
    virtual std::string_view getHelpText() const noexcept { return getDetailedDescription(); }
};

/// A package in the tree. It lives as long as the process.
class ORDO_API OrdoPackage {
public:
    /// Registers an outermost package and initializes it. The tree owns the description from then on, unless the call
    /// throws. If the name is taken, the existing package is initialized with this description as well.
    static OrdoPackage* addPackage(OrdoPackageInfo* package);
    /// Finds a package by its dotted name; null if there is none.
    static OrdoPackage* getPackage(InternedName dottedName);
    /// The outermost packages, in the order of their registration.
    static std::span<OrdoPackage* const> getPackages();

    OrdoPackage(OrdoPackage const&) = delete;
    OrdoPackage& operator=(OrdoPackage const&) = delete;

    /// Adds a package below this one; otherwise like addPackage.
    OrdoPackage* addSubPackage(OrdoPackageInfo* package);
    /// Registers a class description, which the package owns from the call on. `mode` has no effect; all callers pass
    /// 2. If the name is taken, the description replaces the former one, unless that class is defined already.
    void addClass(OrdoClassInfo* description, int mode);

    InternedName name() const noexcept { return name_; }            ///< the dotted name
    InternedName shortName() const noexcept { return shortName_; }  ///< the last component
    OrdoPackageInfo& info() const noexcept { return *info_; }
    OrdoPackage* parent() const noexcept { return parent_; }

    std::span<OrdoPackage* const> subPackages() const noexcept { return subPackages_; }
    OrdoPackage* findSubPackage(InternedName shortName);
    /// The short names of all registered classes, in the order of registration. Defines no class.
    std::span<InternedName const> classNames() const noexcept { return classNames_; }
    /// Finds the class with this short name and defines it; null if there is none.
    OrdoClass* findClass(InternedName shortName);

private:
    friend struct PackageTree;

    OrdoPackage(InternedName name, InternedName shortName, OrdoPackageInfo& info, OrdoPackage* parent)
        : name_(name), shortName_(shortName), info_(&info), parent_(parent) {}
    ~OrdoPackage() = default;

    InternedName name_;
    InternedName shortName_;
    OrdoPackageInfo* info_;
    OrdoPackage* parent_;
    std::vector<OrdoPackage*> subPackages_;
    std::vector<InternedName> classNames_;
};

}  // namespace ordo

/// Whether the object system runs the registration of libraries itself. The answer has no effect on what libraries do.
extern "C" ORDO_API bool omGetOrdoUsingUSM() noexcept;
