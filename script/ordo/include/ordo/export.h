// The export mark of libordo, which its two modules (ordo, mi) share. Everything else in the library is hidden.
#pragma once

#define ORDO_API [[gnu::visibility("default")]]
