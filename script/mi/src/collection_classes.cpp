#include "collection_classes.h"

#include <keel/text.h>
#include <ordo/class.h>
#include <ordo/error.h>
#include <ordo/factory/method.h>
#include <ordo/package.h>

#include <quay/zero/mi/bindings.h>

#include "script_names.h"

namespace quay::zero::mi {

using ordo::OrdoValue;

namespace {

std::string shortNameOf(std::string_view fullName) { return std::string(fullName.substr(fullName.rfind('.') + 1)); }

bool isOwnerAlive(void const* native) noexcept {
    ModelElement::Impl const* const owner = static_cast<AbstractOwnedCollection const*>(native)->owner();
    return owner != nullptr && owner->isAlive();
}

}  // namespace

CollectionClassInfo::CollectionClassInfo(char const* fullName, ordo::OrdoCollection const& protocol, Define define,
                                         std::string_view description)
    : HandleClassInfo(shortNameOf(fullName), fullName),
      protocol_(protocol),
      define_(define),
      description_(description) {}

void CollectionClassInfo::defineClass(ordo::OrdoClass& ordoClass) { define_(ordoClass, std::string(getFullName())); }

ordo::ValidityCheck CollectionClassInfo::validityCheck() const noexcept { return &isOwnerAlive; }

std::string CollectionClassInfo::describeInstance(void const* native) const {
    auto const& collection = *static_cast<AbstractOwnedCollection const*>(native);
    return keel::toUtf8(collection.describe()) + " of " + std::to_string(collection.size());
}

void CollectionClassInfo::dropReference(void* native) noexcept { releaseHeld(native); }

AbstractOwnedCollection& collectionOf(OrdoValue const& self) {
    ordo::OrdoInterface* const object = self.object();
    bool const isCollection =
        object != nullptr && dynamic_cast<CollectionClassInfo const*>(&object->getClass().info()) != nullptr;
    if (!isCollection) ordo::raiseWith(ordo::failures::WrongType, {self.describe(), "a collection"});
    if (object->native() == nullptr || !isOwnerAlive(object->native())) ordo::raiseInvalidHandle();
    return *static_cast<AbstractOwnedCollection*>(object->native());
}

std::size_t positionIn(OrdoValue const& value, std::size_t size, std::size_t behind) {
    std::int64_t const given = value.toInt64();
    std::int64_t const position = given < 0 ? given + static_cast<std::int64_t>(size) : given;
    if (position < 0 || position >= static_cast<std::int64_t>(size + behind)) {
        ordo::raiseWith(ordo::failures::IndexOutOfRange, {std::to_string(given), std::to_string(size)});
    }
    return static_cast<std::size_t>(position);
}

void addCollectionClasses(ordo::OrdoPackage& package) {
    struct {
        char const* name;
        ordo::OrdoCollection const& protocol;
        CollectionClassInfo::Define define;
        char const* description;
    } const classes[] = {
        {names::kSequence, elementSequenceProtocol, &defineElementSequence, "Owned elements in order."},
        {names::kSet, elementSetProtocol, &defineElementCollection, "Owned elements without an order of their own."},
        {names::kMap, elementMapProtocol, &defineElementCollection, "Owned elements by a property of theirs."},
        {names::kMultimap, elementMultimapProtocol, &defineElementCollection,
         "Owned elements by a property of theirs, any number to a key."},
        {names::kPrimitiveSequence, valueSequenceProtocol, &defineValueSequence, "Plain values in order."},
        {names::kPrimitiveSet, valueSetProtocol, &defineValueCollection, "Plain values, each once, in their order."},
        {names::kPrimitiveAssociative, valueSetProtocol, &defineValueCollection, "Plain values by key."},
    };
    for (auto const& c : classes) {
        package.addClass(std::make_unique<CollectionClassInfo>(c.name, c.protocol, c.define, c.description).release(),
                         2);
    }
}

}  // namespace quay::zero::mi
