#include <quay/zero/mi/empty_parent_package.h>

#include <utility>

namespace quay::zero::mi {

EmptyParentPackage::EmptyParentPackage(std::string_view dottedName) {
    std::size_t const dot = dottedName.rfind('.');
    if (dot == std::string_view::npos) {
        name_ = dottedName;
    } else {
        name_ = dottedName.substr(dot + 1);
        parentPath_ = dottedName.substr(0, dot);
    }
}

ordo::OrdoPackage* EmptyParentPackage::registerPackage(std::unique_ptr<EmptyParentPackage> package) {
    ordo::OrdoPackage* made = nullptr;
    if (package->parentPath_.empty()) {
        made = ordo::OrdoPackage::addPackage(package.get());
    } else {
        ordo::OrdoPackage* parent = ordo::OrdoPackage::getPackage(ordo::internName(package->parentPath_));
        if (parent == nullptr) parent = registerPackage(std::make_unique<EmptyParentPackage>(package->parentPath_));
        made = parent->addSubPackage(package.get());
    }
    static_cast<void>(package.release());
    return made;
}

}  // namespace quay::zero::mi
