// Forward declarations of what queries are made of.
#pragma once

#include <quay/zero/query/match_mode.h>

namespace quay::zero::query {

class AbstractQuery;
class InstanceAttachment;
template <class X>
class MetaclassAttachment;

template <class T, class A, bool optional, class Enable>
class ConstrainableWithAttachment;
template <class Y, class A>
class ConstrainableRelationWithAttachment;

}  // namespace quay::zero::query
