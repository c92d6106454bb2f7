// Whether a query on a class includes the elements of its subclasses.
#pragma once

namespace quay::zero::query {

enum class SearchClassMatchMode : int {
    Exact,          ///< those of the class itself
    WithSubclasses  ///< those of its subclasses as well
};

}  // namespace quay::zero::query
