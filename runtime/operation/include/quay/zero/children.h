// Walking what elements own, without knowing their classes.
#pragma once

#include <quay/zero/meta/property.h>

#include <vector>

namespace quay::zero {

class PropertyDescriptor;

/// Whether the property has several values or children.
QUAY_ZERO_API bool isSeveral(meta::Property const& property);

/// All that the element holds by a property that owns elements, in order: its children, elements that took a proxy's
/// place without being contained there, and proxies that can't be resolved. Others are resolved first. The members of
/// a set come by rising id. Empty for a property that owns no elements or isn't one of the element's class. Costs a
/// copy of the members' handles, and for a set the sorting.
QUAY_ZERO_API std::vector<ModelElement> membersOf(ModelElement const& element, meta::Property const& property);

/// The members that `membersOf` above returns, for a descriptor that owns elements; those of a set in no particular
/// order.
QUAY_ZERO_API std::vector<ModelElement> membersOf(ModelElement::Impl const& element,
                                                  PropertyDescriptor const& descriptor);

/// Whether the element contains the member by that property. Other members that `membersOf` returns are references
/// without containment or proxies.
QUAY_ZERO_API bool contains(ModelElement const& element, meta::Property const& property, ModelElement const& member);

/// Those of `membersOf` that the element contains.
QUAY_ZERO_API std::vector<ModelElement> childrenOf(ModelElement const& element, meta::Property const& property);

}  // namespace quay::zero
