#include "class_table.h"

#include <zx/array.h>

#include <memory>

namespace ordo {
namespace {

bool derivesFrom(std::string_view className, std::string_view ancestor) {
    OrdoClass const* const found = OrdoClass::getClass(internName(className));
    return found != nullptr && found->isA(internName(ancestor));
}

}  // namespace

ClassTable::ClassTable() { zx::setClassHierarchy(derivesFrom); }

ClassTable& ClassTable::instance() {
    static auto* const table = new ClassTable;  // never destroyed, nor is any class: script objects refer to theirs
    return *table;
}

void ClassTable::add(std::unique_ptr<OrdoClassInfo> description) {
    InternedName const name = internName(description->getFullName());
    OrdoClass*& place = classes[name];
    if (place == nullptr) {
        place = new OrdoClass(name, *description);
        static_cast<void>(description.release());
    } else if (place->state_ == OrdoClass::State::Undefined) {
        delete std::exchange(place->info_, description.release());
    }
}

OrdoClass* ClassTable::find(InternedName name) const noexcept {
    auto const found = classes.find(name);
    return found != classes.end() ? found->second : nullptr;
}

}  // namespace ordo
