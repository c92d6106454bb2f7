// The library's entry points.
#include <ModelRefInfoRepo/export.h>

#include <ordo/package.h>

#include <mutex>

#include "script_package.h"

extern "C" {

/// Registers the script package; the script environment's module loader calls it once. The schema is declared already.
VW_MODELREF_INFO_API void ZLInitialize_vw_modelref_info() {
    if (omGetOrdoUsingUSM()) {
        mi::ModelRefInfoRepoPackage::registerPackage();
        return;
    }
    // The flag is local to each call, so this branch runs the registration on every call as well.
    std::once_flag flag;
    std::call_once(flag, &mi::ModelRefInfoRepoPackage::registerPackage);
}

/// Deliberately does nothing.
VW_MODELREF_INFO_API void ZLTerminate_vw_modelref_info() {}
}
