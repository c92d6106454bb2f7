// What the header of every generated class needs. That of a class with collections, arrays or optional values includes
// the field's header itself.
#pragma once

#include <quay/zero/elements/builder.h>
#include <quay/zero/elements/handle.h>
#include <quay/zero/elements/level.h>
#include <quay/zero/query/query.h>
#include <quay/zero/value.h>
