// The registry of bindings: which script object belongs to which native object.
#pragma once

#include <ordo/export.h>
#include <ordo/interface.h>
#include <ordo/interned.h>

#include <cstddef>

namespace ordo::factory::basic {

/// The bindings of the process. A binding is keyed by the native object's address and the class together, so that a
/// native object and its first member can both be bound. It holds its script object weakly: while the script object
/// exists, every look-up gives it. A binding owns one counted reference to the native object: the caller whose
/// `announce` made the binding takes it, and the class description releases it when the script object is destroyed.
///
/// For the script thread only. Throws NoSuchClass for a class name that isn't registered.
class ORDO_API BindingRegistry {
public:
    BindingRegistry() = delete;

    /// The one script object bound to `object`; if there is none, it is made under the class name, and `isNew` is set.
    /// For null, an object of the class without a native object, which isn't bound and isn't new.
    static OrdoObject announce(void* object, InternedName className, bool& isNew);
    static OrdoObject announce(void const* object, InternedName className, bool& isNew);

    /// Gives the script object of a constructor call its native object, which isn't null. With `stored`, binds the two.
    /// False, and no change, if the native object is bound to another script object already. Values aren't stored and
    /// have a `copier`.
    static bool announceForConstructor(void* object, InternedName className, OrdoInterface& scriptObject, bool stored,
                                       NativeCopier copier = nullptr);

    /// A script object that takes ownership of the value `object`, without a binding. `copier` makes further values of
    /// it. If this throws, the caller still owns the value.
    static OrdoObject announceWithoutStoring(void* object, InternedName className, NativeCopier copier);

    /// Removes the binding under this class; returns whether there was one.
    static bool remove(void const* object, InternedName className) noexcept;
    /// Removes the binding under any class: if there are several, the one made last.
    static bool remove(void const* object) noexcept;

    /// The script object that is bound under this class, or null.
    static OrdoInterface* find(void const* object, InternedName className) noexcept;
    /// The number of bindings.
    static std::size_t size() noexcept;

private:
    static OrdoInterface* inChain(OrdoInterface* first, InternedName className) noexcept;
};

}  // namespace ordo::factory::basic
