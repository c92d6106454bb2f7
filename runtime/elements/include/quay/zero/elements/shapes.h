// Every shape of property: what the source of a generated class needs.
#pragma once

#include <quay/zero/elements/definitions.h>
#include <quay/zero/elements/derived.h>
#include <quay/zero/elements/map_owned.h>
#include <quay/zero/elements/multimap_owned.h>
#include <quay/zero/elements/optional.h>
#include <quay/zero/elements/pattern.h>
#include <quay/zero/elements/sequence.h>
#include <quay/zero/elements/sequence_owned.h>
#include <quay/zero/elements/set.h>
#include <quay/zero/elements/set_owned.h>
#include <quay/zero/elements/single.h>
#include <quay/zero/elements/single_array.h>
#include <quay/zero/elements/single_key.h>
#include <quay/zero/elements/single_owned.h>
