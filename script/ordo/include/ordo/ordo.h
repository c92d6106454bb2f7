// The class-object system: packages, classes with properties, methods and enumerations, and the bindings between script
// objects and native ones. It depends on no script language and no native classes: hosts connect it to a language,
// factories to native classes.
#pragma once

#include <ordo/class.h>
#include <ordo/error.h>
#include <ordo/factory/binding_registry.h>
#include <ordo/factory/class_info.h>
#include <ordo/factory/marshaler.h>
#include <ordo/factory/method.h>
#include <ordo/factory/property.h>
#include <ordo/factory/text.h>
#include <ordo/factory/value_type.h>
#include <ordo/package.h>
#include <ordo/type_repository.h>
#include <ordo/value.h>
