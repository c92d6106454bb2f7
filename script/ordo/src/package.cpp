#include "class_table.h"

#include <ordo/package.h>

#include <algorithm>
#include <memory>
#include <string>
#include <unordered_map>

namespace ordo {
namespace {

/// Looks for a class in a package, which may register it when asked.
OrdoClass* findIn(OrdoPackage& package, std::string_view shortName) {
    std::string const name = std::string(package.name().text()) + '.' + std::string(shortName);
    OrdoClass* const found = ClassTable::find(LookupName(name));
    bool const isLoaded = found == nullptr && package.info().attemptToLoadClass(LookupName(shortName));
    return isLoaded ? ClassTable::find(LookupName(name)) : found;
}

OrdoClass* findByName(InternedName name, OrdoPackage* context) {
    if (context != nullptr) {
        if (OrdoClass* const found = findIn(*context, name.text())) {
            return found;
        }
    }
    if (OrdoClass* const found = ClassTable::find(name)) {
        return found;
    }
    std::size_t const dot = name.text().rfind('.');
    if (dot == std::string_view::npos) {
        return nullptr;
    }
    OrdoPackage* const package = OrdoPackage::getPackage(LookupName(name.text().substr(0, dot)));
    return package != nullptr ? findIn(*package, name.text().substr(dot + 1)) : nullptr;
}

}  // namespace

struct PackageTree {
    static PackageTree& instance() {
        static auto* const tree = new PackageTree;  // never destroyed, like all classes
        return *tree;
    }

    OrdoPackage* add(OrdoPackageInfo& info, OrdoPackage* parent, std::vector<OrdoPackage*>& siblings);

    std::unordered_map<InternedName, OrdoPackage*> byName;
    std::vector<OrdoPackage*> outermost;
    std::vector<std::unique_ptr<OrdoPackageInfo>> further;  // descriptions for names already in use

private:
    PackageTree() { ClassTable::setFinder(findByName); }
};

OrdoPackage* PackageTree::add(OrdoPackageInfo& info, OrdoPackage* parent, std::vector<OrdoPackage*>& siblings) {
    std::string const path = parent != nullptr ? std::string(parent->name().text()) + '.' : std::string();
    InternedName const name = internName(path + std::string(info.getName()));
    OrdoPackage*& place = byName[name];
    if (place != nullptr) {
        OrdoPackage* const there = place;
        there->info().throwErrorForDefinitionOfExistingName(name);
        further.reserve(further.size() + 1);
        info.initializePackage(there);
        further.emplace_back(&info);
        return there;
    }
    siblings.reserve(siblings.size() + 1);
    auto* const added = new OrdoPackage(name, internName(info.getName()), info, parent);
    place = added;
    siblings.push_back(added);
    try {
        // The package is in the tree by now, so that its classes are found while it registers more.
        info.initializePackage(added);
    } catch (...) {
        std::erase(siblings, added);
        byName.erase(name);
        delete added;
        throw;
    }
    return added;
}

OrdoPackageInfo::~OrdoPackageInfo() = default;

OrdoPackage* OrdoPackage::addPackage(OrdoPackageInfo* package) {
    PackageTree& tree = PackageTree::instance();
    return tree.add(*package, nullptr, tree.outermost);
}

OrdoPackage* OrdoPackage::addSubPackage(OrdoPackageInfo* package) {
    return PackageTree::instance().add(*package, this, subPackages_);
}

OrdoPackage* OrdoPackage::getPackage(InternedName dottedName) {
    PackageTree& tree = PackageTree::instance();
    if (auto const found = tree.byName.find(dottedName); found != tree.byName.end()) {
        return found->second;
    }
    std::size_t const dot = dottedName.text().rfind('.');
    OrdoPackage* const parent =
        dot != std::string_view::npos ? getPackage(LookupName(dottedName.text().substr(0, dot))) : nullptr;
    if (parent == nullptr || !parent->info_->attemptToLoadSubPackage(LookupName(dottedName.text().substr(dot + 1)))) {
        return nullptr;
    }
    auto const loaded = tree.byName.find(LookupName(dottedName.text()));
    return loaded != tree.byName.end() ? loaded->second : nullptr;
}

std::span<OrdoPackage* const> OrdoPackage::getPackages() { return PackageTree::instance().outermost; }

void OrdoPackage::addClass(OrdoClassInfo* description, int /*mode*/) {
    std::unique_ptr<OrdoClassInfo> owned(description);
    InternedName const shortName = internName(owned->getName());
    bool const known = std::find(classNames_.begin(), classNames_.end(), shortName) != classNames_.end();
    if (known) {
        info_->throwErrorForDefinitionOfExistingName(shortName);
    } else {
        classNames_.reserve(classNames_.size() + 1);
    }
    ClassTable::add(std::move(owned));
    if (!known) {
        classNames_.push_back(shortName);
    }
}

OrdoPackage* OrdoPackage::findSubPackage(InternedName shortName) {
    return getPackage(LookupName(std::string(name_.text()) + '.' + std::string(shortName.text())));
}

OrdoClass* OrdoPackage::findClass(InternedName shortName) {
    return OrdoClass::getClass(LookupName(std::string(name_.text()) + '.' + std::string(shortName.text())));
}

}  // namespace ordo

bool omGetOrdoUsingUSM() noexcept { return true; }
