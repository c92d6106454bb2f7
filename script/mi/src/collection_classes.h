// The script classes of collections.
#pragma once

#include <ordo/factory/class_info.h>
#include <ordo/method.h>
#include <ordo/package.h>

#include <quay/zero/collection.h>

#include <string>
#include <string_view>
#include <vector>

namespace quay::zero::mi {

/// The script class of one kind of collection, which follows from the class's short name. A script object holds an
/// `AbstractOwnedCollection*`; the binding keeps the owner alive, and an object whose owner is dead can't be used.
class CollectionClassInfo final : public ordo::factory::HandleClassInfo<AbstractOwnedCollection, false> {
public:
    using Define = void (*)(ordo::OrdoClass&, std::string const& fullName);

    CollectionClassInfo(char const* fullName, ordo::OrdoCollection const& protocol, Define define,
                        std::string_view description);

    void defineClass(ordo::OrdoClass& ordoClass) override;
    ordo::ValidityCheck validityCheck() const noexcept override;
    ordo::OrdoCollection const* collection() const noexcept override { return &protocol_; }
    std::string describeInstance(void const* native) const override;
    std::string_view getDescription() const noexcept override { return description_; }

protected:
    void dropReference(void* native) noexcept override;

private:
    ordo::OrdoCollection const& protocol_;
    Define define_;
    std::string_view description_;
};

/// Registers all seven collection classes.
void addCollectionClasses(ordo::OrdoPackage& package);

/// The collection behind a method's first argument. InvalidHandle if its owner is dead.
AbstractOwnedCollection& collectionOf(ordo::OrdoValue const& self);
/// The position that a script gave, in a collection of `size` members. A negative one counts back from the end. Throws
/// IndexOutOfRange unless it is below `size + behind`.
std::size_t positionIn(ordo::OrdoValue const& value, std::size_t size, std::size_t behind = 0);

// The protocols and methods of collections; those for elements and those for values have a source file each.

extern ordo::OrdoCollection const& elementSequenceProtocol;
extern ordo::OrdoCollection const& elementSetProtocol;
extern ordo::OrdoCollection const& elementMapProtocol;
extern ordo::OrdoCollection const& elementMultimapProtocol;
void defineElementCollection(ordo::OrdoClass& ordoClass, std::string const& fullName);
void defineElementSequence(ordo::OrdoClass& ordoClass, std::string const& fullName);

extern ordo::OrdoCollection const& valueSequenceProtocol;
extern ordo::OrdoCollection const& valueSetProtocol;
void defineValueCollection(ordo::OrdoClass& ordoClass, std::string const& fullName);
void defineValueSequence(ordo::OrdoClass& ordoClass, std::string const& fullName);

}  // namespace quay::zero::mi
