// What the header of every generated class needs. The header of a class with collections, arrays or optional values
// includes the headers of those fields as well.
#pragma once

#include <quay/zero/elements/builder.h>
#include <quay/zero/elements/handle.h>
#include <quay/zero/elements/level.h>
#include <quay/zero/query/query.h>
#include <quay/zero/value.h>
