// The export mark of libordo, which its two rooms (ordo, mi) share. Everything else in the library is hidden.
#pragma once

#define ORDO_API [[gnu::visibility("default")]]
