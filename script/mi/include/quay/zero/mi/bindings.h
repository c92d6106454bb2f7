// Elements, collections and models as script objects. One native object has at most one script object, which keeps it
// and its model alive for as long as somebody holds that.
#pragma once

#include <ordo/interface.h>
#include <ordo/value.h>

#include <quay/zero/collection.h>
#include <quay/zero/model.h>

namespace quay::zero::mi {

/// The interned script name of a class; looked up once a class.
ORDO_API ordo::InternedName scriptNameOf(meta::Class const& metaClass);
/// That of "quay.zero.ModelElement", by which any element's script object answers.
ORDO_API ordo::InternedName elementClassName() noexcept;

/// The script object of an element, of its most derived class; nothing for an empty handle.
ORDO_API ordo::OrdoValue toScript(ModelElement const& element);
/// That of an element's collection, of the class that follows from its kind.
ORDO_API ordo::OrdoValue toScript(AbstractOwnedCollection const& collection);
ORDO_API ordo::OrdoValue toScript(Model const& model);
/// Elements as a list.
ORDO_API ordo::OrdoValue toScript(std::vector<ModelElement> const& elements);

/// The element behind a script object, dead or alive; an empty handle for nothing. WrongType for anything else.
ORDO_API ModelElement elementIn(ordo::OrdoValue const& value);
/// The model behind a script object; an empty handle for anything else.
ORDO_API Model modelIn(ordo::OrdoValue const& value);
/// The model behind a script object. InvalidHandle where there is none.
ORDO_API Model liveModelIn(ordo::OrdoValue const& value);

/// Ties the script object of a constructor call to the native object that the call made.
ORDO_API void bindConstructed(ModelElement const& element, ordo::OrdoInterface& scriptObject);
ORDO_API void bindConstructed(Model const& model, ordo::OrdoInterface& scriptObject);
/// Lets go of what a binding holds; for the class descriptions, when a script object has ended.
ORDO_API void releaseHeld(void const* native) noexcept;

}  // namespace quay::zero::mi
