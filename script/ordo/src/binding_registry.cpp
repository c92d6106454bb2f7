#include <ordo/class.h>
#include <ordo/error.h>
#include <ordo/factory/binding_registry.h>

#include <boost/unordered/unordered_flat_map.hpp>

namespace ordo::factory::basic {
namespace {

// The first script object of each address; further ones, of other classes, are chained to it.
using Bindings = boost::unordered_flat_map<void const*, OrdoInterface*>;

Bindings& bindings() {
    static auto* const instance = new Bindings;  // never destroyed: script objects are while the process exits
    return *instance;
}

OrdoClass& classNamed(InternedName className) {
    OrdoClass* const found = OrdoClass::getClass(className);
    if (found == nullptr) {
        raiseWith(failures::NoSuchClass, {std::string(className.text())});
    }
    return *found;
}

void unbind(OrdoInterface& object) noexcept { BindingRegistry::remove(object.native(), object.classIdentity().name()); }

}  // namespace

OrdoObject BindingRegistry::announce(void* object, InternedName className, bool& isNew) {
    isNew = false;
    if (object == nullptr) {
        return OrdoInterface::make(classNamed(className));
    }
    auto entry = bindings().find(object);
    if (OrdoInterface* const bound = entry != bindings().end() ? inChain(entry->second, className) : nullptr) {
        return OrdoObject(bound);
    }
    // Defining the class may bind other objects, so the place must be looked up again afterwards.
    OrdoObject made = OrdoInterface::make(classNamed(className));
    entry = bindings().try_emplace(object).first;
    made->native_ = object;
    made->nextBound_ = std::exchange(entry->second, made.get());
    made->unbind_ = unbind;
    isNew = true;
    return made;
}

OrdoObject BindingRegistry::announce(void const* object, InternedName className, bool& isNew) {
    return announce(const_cast<void*>(object), className, isNew);
}

bool BindingRegistry::announceForConstructor(void* object, InternedName className, OrdoInterface& scriptObject,
                                             bool stored, NativeCopier copier) {
    if (stored) {
        if (find(object, className) != nullptr) {
            return false;
        }
        scriptObject.nextBound_ = std::exchange(bindings()[object], &scriptObject);
        scriptObject.unbind_ = unbind;
    }
    scriptObject.native_ = object;
    scriptObject.copier_ = copier;
    return true;
}

OrdoObject BindingRegistry::announceWithoutStoring(void* object, InternedName className, NativeCopier copier) {
    return OrdoInterface::make(classNamed(className), object, copier);
}

bool BindingRegistry::remove(void const* object, InternedName className) noexcept {
    auto const entry = bindings().find(object);
    if (entry == bindings().end()) {
        return false;
    }
    OrdoInterface** link = &entry->second;
    while (*link != nullptr && (*link)->class_->name() != className) {
        link = &(*link)->nextBound_;
    }
    if (*link == nullptr) {
        return false;
    }
    (*link)->unbind_ = nullptr;
    *link = std::exchange((*link)->nextBound_, nullptr);
    if (entry->second == nullptr) {
        bindings().erase(entry);
    }
    return true;
}

bool BindingRegistry::remove(void const* object) noexcept {
    auto const entry = bindings().find(object);
    return entry != bindings().end() && remove(object, entry->second->class_->name());
}

OrdoInterface* BindingRegistry::find(void const* object, InternedName className) noexcept {
    auto const entry = bindings().find(object);
    return entry != bindings().end() ? inChain(entry->second, className) : nullptr;
}

OrdoInterface* BindingRegistry::inChain(OrdoInterface* first, InternedName className) noexcept {
    while (first != nullptr && first->class_->name() != className) {
        first = first->nextBound_;
    }
    return first;
}

std::size_t BindingRegistry::size() noexcept {
    std::size_t count = 0;
    for (auto const& [object, first] : bindings()) {
        for (OrdoInterface const* bound = first; bound != nullptr; bound = bound->nextBound_) {
            ++count;
        }
    }
    return count;
}

}  // namespace ordo::factory::basic
