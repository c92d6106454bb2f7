// What the header of a generated class needs.
#pragma once

#include <quay/zero/element_map.h>
#include <quay/zero/element_sequence.h>
#include <quay/zero/element_set.h>
#include <quay/zero/elements/builder.h>
#include <quay/zero/elements/create.h>
#include <quay/zero/elements/handle.h>
#include <quay/zero/elements/level.h>
#include <quay/zero/meta/declared_package.h>
#include <quay/zero/primitive_collection.h>
#include <quay/zero/query/query.h>
#include <zx/array_holder.h>
