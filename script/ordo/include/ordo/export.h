// The export macro of libordo, which contains ordo and mi. All other symbols of the library are hidden.
#pragma once

#define ORDO_API [[gnu::visibility("default")]]
