// The vocabulary of queries by name, for headers that only mention it.
#pragma once

namespace quay::zero::query {

class AbstractQuery;
class InstanceAttachment;
template <class X>
class MetaclassAttachment;

template <class T, class A, bool optional, class Enable>
class ConstrainableWithAttachment;
template <class Y, class A>
class ConstrainableRelationWithAttachment;

/// Which elements a query on a class looks at.
enum class SearchClassMatchMode : int {
    Exact,          ///< those of the class itself
    WithSubclasses  ///< those of its subclasses as well
};

}  // namespace quay::zero::query
