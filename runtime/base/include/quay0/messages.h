// The failures that the modelling runtime reports, one class each. Their sentences stand in keel's catalogue.
// Throw them by quay::zero::reportException (<quay/zero/report.h>).
#pragma once

#include <keel/message.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quay0::messages {

/// Base of the message classes; fixes the catalogue.
template <class M>
class RuntimeMessage : public keel::MessageOf<M> {
protected:
    explicit RuntimeMessage(std::string_view id, std::vector<std::u16string> arguments = {})
        : keel::MessageOf<M>("quay0:messages", id, std::move(arguments)) {}
};

/// A proxy is to be written, or a collection of a proxy is requested.
struct CannotModifyProxy : RuntimeMessage<CannotModifyProxy> {
    CannotModifyProxy() : RuntimeMessage("CannotModifyProxy") {}
};

/// A reflective access names a property that the class or data type doesn't have.
struct NoSuchProperty : RuntimeMessage<NoSuchProperty> {
    NoSuchProperty(std::u16string property, std::u16string qualifiedTypeName)
        : RuntimeMessage("NoSuchProperty", {std::move(property), std::move(qualifiedTypeName)}) {}
};

/// A type that is needed isn't registered.
struct NoSuchType : RuntimeMessage<NoSuchType> {
    explicit NoSuchType(std::u16string name) : RuntimeMessage("NoSuchType", {std::move(name)}) {}
};

/// An empty optional stands where a value is needed, or a constructor receives a value that it can't use.
struct InvalidValue : RuntimeMessage<InvalidValue> {
    InvalidValue() : RuntimeMessage("InvalidValue") {}
};

/// A value has another type or another count than the one requested.
struct CannotCastIncompatibleTypes : RuntimeMessage<CannotCastIncompatibleTypes> {
    explicit CannotCastIncompatibleTypes(std::u16string typeName)
        : RuntimeMessage("CannotCastIncompatibleTypes", {std::move(typeName)}) {}
};

/// A collection receives an element of the wrong class.
struct CannotAddIncompatibleTypes : RuntimeMessage<CannotAddIncompatibleTypes> {
    CannotAddIncompatibleTypes(std::u16string elementType, std::u16string collectionType)
        : RuntimeMessage("CannotAddIncompatibleTypes", {std::move(elementType), std::move(collectionType)}) {}
};

/// An empty handle, or one of a destroyed element, is stored at a position of a sequence.
struct CannotAddNonExistentObject : RuntimeMessage<CannotAddNonExistentObject> {
    CannotAddNonExistentObject() : RuntimeMessage("CannotAddNonExistentObject") {}
};

/// An element is stored at a position of a unique sequence that holds it already.
struct CannotAddSecondObject : RuntimeMessage<CannotAddSecondObject> {
    CannotAddSecondObject() : RuntimeMessage("CannotAddSecondObject") {}
};

/// An element of one model is to enter a property of an element of another.
struct CannotCreateCrossModelAssociation : RuntimeMessage<CannotCreateCrossModelAssociation> {
    CannotCreateCrossModelAssociation() : RuntimeMessage("CannotCreateCrossModelAssociation") {}
};

/// A builder creates an element with no model set.
struct CannotCreateWithoutModel : RuntimeMessage<CannotCreateWithoutModel> {
    CannotCreateWithoutModel() : RuntimeMessage("CannotCreateWithoutModel") {}
};

/// An element is to get a key, or an id, that another one has.
struct UniquenessConstraint : RuntimeMessage<UniquenessConstraint> {
    UniquenessConstraint() : RuntimeMessage("UniquenessConstraint") {}
};

/// A frozen model is to be written.
struct ModelIsFrozen : RuntimeMessage<ModelIsFrozen> {
    ModelIsFrozen() : RuntimeMessage("ModelIsFrozen") {}
};

/// A listener writes into the model whose change it is being told of.
struct ListenerMayNotWrite : RuntimeMessage<ListenerMayNotWrite> {
    ListenerMayNotWrite() : RuntimeMessage("ListenerMayNotWrite") {}
};

/// Undo or redo is requested inside a transaction.
struct TransactionIsOpen : RuntimeMessage<TransactionIsOpen> {
    TransactionIsOpen() : RuntimeMessage("TransactionIsOpen") {}
};

}  // namespace quay0::messages
