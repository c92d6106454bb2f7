// Which script object stands for which native object.
#pragma once

#include <ordo/export.h>
#include <ordo/interface.h>
#include <ordo/interned.h>

#include <cstddef>

namespace ordo::factory::basic {

/// The bindings of the process. A binding is keyed by the native object's address and the class together, so that a
/// native object and its first member can both be bound. It holds its script object weakly: while somebody holds that,
/// everybody gets the same one. What the binding owns of the native object (one counted reference) is taken by whoever
/// announced it first and dropped by the class description when the script object ends.
///
/// Belongs to the script thread. Class names must be those of registered classes; others are NoSuchClass.
class ORDO_API BindingRegistry {
public:
    BindingRegistry() = delete;

    /// The one script object bound to `object`; made under the class name if there is none, which `isNew` tells. Null
    /// gives an object of the class without a native one, which isn't stored and isn't new.
    static OrdoObject announce(void* object, InternedName className, bool& isNew);
    static OrdoObject announce(void const* object, InternedName className, bool& isNew);

    /// Gives the script object of a constructor call its native object. With `stored`, binds the two. False if the
    /// native object is bound to another script object already: then nothing has changed. `object` isn't null. Values
    /// aren't stored and have a `copier`.
    static bool announceForConstructor(void* object, InternedName className, OrdoInterface& scriptObject, bool stored,
                                       NativeCopier copier = nullptr);

    /// A script object that holds the value `object`, which it takes over, with no entry here. `copier` makes further
    /// values of it. If it throws it has taken nothing over.
    static OrdoObject announceWithoutStoring(void* object, InternedName className, NativeCopier copier);

    /// Removes the binding under this class; says whether there was one.
    static bool remove(void const* object, InternedName className) noexcept;
    /// Removes the binding of whichever class: the one made last, if there are several.
    static bool remove(void const* object) noexcept;

    /// The script object that is bound, or null.
    static OrdoInterface* find(void const* object, InternedName className) noexcept;
    /// The number of bindings.
    static std::size_t size() noexcept;

private:
    static OrdoInterface* inChain(OrdoInterface* first, InternedName className) noexcept;
};

}  // namespace ordo::factory::basic
