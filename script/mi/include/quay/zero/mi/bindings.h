// Elements, collections and models as script objects. A native object has at most one script object, which keeps the
// native object and its model alive while it exists.
#pragma once

#include <ordo/interface.h>
#include <ordo/value.h>

#include <quay/zero/collection.h>
#include <quay/zero/model.h>

namespace quay::zero::mi {

/// The interned script name of a class; looked up once per class.
ORDO_API ordo::InternedName scriptNameOf(meta::Class const& metaClass);
/// The interned name "quay.zero.ModelElement", the class that the script objects of all elements derive from.
ORDO_API ordo::InternedName elementClassName() noexcept;

/// The script object of an element, of the element's most derived class; nothing for an empty handle.
ORDO_API ordo::OrdoValue toScript(ModelElement const& element);
/// The script object of a collection of elements, of the class that follows from the collection's kind.
ORDO_API ordo::OrdoValue toScript(AbstractOwnedCollection const& collection);
ORDO_API ordo::OrdoValue toScript(Model const& model);
/// A list of the elements' script objects.
ORDO_API ordo::OrdoValue toScript(std::vector<ModelElement> const& elements);

/// The element behind a script object, dead or alive; an empty handle for nothing. WrongType for anything else.
ORDO_API ModelElement elementIn(ordo::OrdoValue const& value);
/// The model behind a script object; an empty handle for anything else.
ORDO_API Model modelIn(ordo::OrdoValue const& value);
/// The model behind a script object. InvalidHandle where there is none.
ORDO_API Model liveModelIn(ordo::OrdoValue const& value);

/// Binds the script object of a constructor call to the native object that the call made.
ORDO_API void bindConstructed(ModelElement const& element, ordo::OrdoInterface& scriptObject);
ORDO_API void bindConstructed(Model const& model, ordo::OrdoInterface& scriptObject);
/// Releases what the binding of a native object keeps alive. Class descriptions call this when a script object is
/// destroyed.
ORDO_API void releaseHeld(void const* native) noexcept;

}  // namespace quay::zero::mi
