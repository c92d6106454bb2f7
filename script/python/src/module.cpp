// The extension module `ordo._core`, which shows the class-object system to Python. It handles packages, classes, their
// members and arrays in general, and no class in particular.
#include "classes.h"
#include "collections.h"
#include "diagnostics.h"
#include "errors.h"
#include "members.h"
#include "packages.h"

namespace {

PyModuleDef definition{
    PyModuleDef_HEAD_INIT, "ordo._core", "The class-object system.", -1, nullptr, nullptr, nullptr, nullptr, nullptr};

}  // namespace

// NOLINTNEXTLINE(bugprone-reserved-identifier): the interpreter derives the name from the module's
PyMODINIT_FUNC PyInit__core() {
    return host::guarded([] {
        host::requireMainInterpreter();
        host::Ref module(PyModule_Create(&definition));
        host::setUpMembers(module.get());
        host::setUpClasses(module.get());
        host::setUpCollections();
        host::setUpPackages(module.get());
        host::logDiagnostics();
        return module.release();
    });
}
