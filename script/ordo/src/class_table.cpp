#include "class_table.h"

#include <zx/array.h>

#include <stdexcept>
#include <utility>

namespace ordo {
namespace {

bool derivesFrom(std::string_view className, std::string_view ancestor) {
    OrdoClass const* const found = OrdoClass::getClass(LookupName(className));
    return found != nullptr && found->isA(LookupName(ancestor));
}

}  // namespace

void ClassTable::add(std::unique_ptr<OrdoClassInfo> description) {
    // The first class that is registered passes the class hierarchy to the arrays.
    [[maybe_unused]] static auto* const former = zx::setClassHierarchy(derivesFrom);
    InternedName const name = internName(description->getFullName());
    if (!name) {
        throw std::invalid_argument("a class needs a name");
    }
    OrdoClass*& place = name.entry_->ordoClass;
    if (place == nullptr) {
        // Never destroyed, like all classes: script objects refer to their classes.
        place = new OrdoClass(name, *description);
        static_cast<void>(description.release());
    } else if (place->state_ == OrdoClass::State::Undefined) {
        delete std::exchange(place->info_, description.release());
    }
}

}  // namespace ordo
