// The extension module `ordo._core`: the class-object system as the interpreter sees it. It knows packages, classes,
// their members and arrays, and no class in particular.
#include "classes.h"
#include "collections.h"
#include "errors.h"
#include "members.h"
#include "packages.h"

namespace {

PyModuleDef definition{
    PyModuleDef_HEAD_INIT, "ordo._core", "The class-object system.", -1, nullptr, nullptr, nullptr, nullptr, nullptr};

}  // namespace

// NOLINTNEXTLINE(bugprone-reserved-identifier): the interpreter makes the name out of the module's
PyMODINIT_FUNC PyInit__core() {
    return host::guarded([] {
        host::Ref module(PyModule_Create(&definition));
        host::setUpMembers(module.get());
        host::setUpClasses(module.get());
        host::setUpCollections();
        host::setUpPackages(module.get());
        return module.release();
    });
}
