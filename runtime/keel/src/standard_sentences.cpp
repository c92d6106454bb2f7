#include "standard_sentences.h"

namespace keel {

std::vector<StandardEntry> standardSentences() {
    return {
        {"quay0:messages:CannotModifyProxy",
         {"the element is a proxy, which isn't loaded and can't be changed; resolve it first"}},
        {"quay0:messages:NoSuchProperty", {"'{1}' has no property '{0}'"}},
        {"quay0:messages:NoSuchType",
         {"there is no type '{0}' in the meta registry; load the package that declares it first"}},
        {"quay0:messages:InvalidValue",
         {"the value is missing or can't be used here", "{value} can't be used as a value here"}},
        {"quay0:messages:CannotCastIncompatibleTypes",
         {"the value is of another type or count than is asked for; the type in question is '{0}'"}},
        {"quay0:messages:CannotAddIncompatibleTypes",
         {"an element of class '{0}' can't stand in a collection of '{1}'"}},
        {"quay0:messages:CannotAddNonExistentObject",
         {"the element is empty or was destroyed, so it can neither be changed nor be put anywhere"}},
        {"quay0:messages:CannotAddSecondObject",
         {"the element is in the collection already, and it can be there only once"}},
        {"quay0:messages:CannotCreateCrossModelAssociation",
         {"the element belongs to another model; create it in the model where it is to be used"}},
        {"quay0:messages:CannotCreateWithoutModel", {"an element can't be created without a model; give one first"}},
        {"quay0:messages:UniquenessConstraint",
         {"the key or id is in use; each element needs one of its own", "{value} is in use"}},
        {"quay0:messages:ModelIsFrozen", {"the model is frozen and can't be changed; thaw it first"}},
        {"quay0:messages:ListenerMayNotWrite",
         {"a listener can't change the model that it listens to; do it after the listener has returned"}},
        {"quay0:messages:TransactionIsOpen",
         {"undo and redo can't run inside a transaction; commit it or roll it back first"}},
        {"ZELDRA:class:InvalidHandle", {"the handle is empty or its element was destroyed"}},
    };
}

}  // namespace keel
