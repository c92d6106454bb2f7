// The arrays of the scripting environment: everything in one header.
#pragma once

#include <zx/array.h>
#include <zx/containers.h>
#include <zx/error.h>
#include <zx/objects.h>
#include <zx/property_array.h>
#include <zx/text.h>
#include <zx/values.h>
