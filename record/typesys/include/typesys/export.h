// The export macro of libtypesys.
#pragma once

#define TYPESYS_API [[gnu::visibility("default")]]
