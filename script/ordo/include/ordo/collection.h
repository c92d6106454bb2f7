// The collection protocol, through which a host gives script objects the interface of its own language's collections.
#pragma once

#include <ordo/export.h>
#include <ordo/value.h>

#include <cstddef>
#include <vector>

namespace ordo {

enum class CollectionKind {
    Sequence,  ///< in order, by position
    Set,
    Map,       ///< by key
    Multimap,  ///< by key, with any number of members per key
};

/// The collection protocol of a class, which the class's description returns. One object serves all instances, and
/// lives as long as the class. `native` is the native object behind the script object; the host has checked that it is
/// valid. Changing operations (`add`, `remove`, `clear`, ...) are ordinary methods of the class.
class ORDO_API OrdoCollection {
public:
    virtual ~OrdoCollection();

    virtual CollectionKind kind() const noexcept = 0;

    /// The number of members; in a multimap, of all keys.
    virtual std::size_t size(void* native) const = 0;
    /// All members at this moment: by position, or in the collection's own order.
    virtual std::vector<OrdoValue> members(void* native) const = 0;
    /// Whether a value is a member, or a key of a map. False for a value that can't be one.
    virtual bool contains(void* native, OrdoValue const& value) const = 0;

    /// Sequences: the member at `index`, which is less than size().
    virtual OrdoValue at(void* native, std::size_t index) const;

    /// Maps: the key of each member, in the order of members().
    virtual std::vector<OrdoValue> keys(void* native) const;
    /// Maps: the members under a key, none if there is no such key.
    virtual std::vector<OrdoValue> find(void* native, OrdoValue const& key) const;

protected:
    OrdoCollection() = default;
    OrdoCollection(OrdoCollection const&) = default;
    OrdoCollection& operator=(OrdoCollection const&) = default;
};

}  // namespace ordo
