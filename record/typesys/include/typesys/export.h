// The export mark of libtypesys.
#pragma once

#define TYPESYS_API [[gnu::visibility("default")]]
