// The whole type system.
#pragma once

#include <typesys/block.h>
#include <typesys/data_type_table.h>
#include <typesys/diagnostic.h>
#include <typesys/diagram.h>
#include <typesys/fixed_point.h>
#include <typesys/test_hooks.h>
