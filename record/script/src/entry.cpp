// The library's entry points.
#include <ModelRefInfoRepo/export.h>

#include <ordo/package.h>

#include <mutex>

#include "script_package.h"

extern "C" {

/// Registers the script package; called once by the script environment's module loader. The schema is up already.
VW_MODELREF_INFO_API void ZLInitialize_vw_modelref_info() {
    if (omGetOrdoUsingUSM()) {
        mi::ModelRefInfoRepoPackage::registerPackage();
        return;
    }
    // The flag is this call's own, so this path runs the registration on every call as well.
    std::once_flag flag;
    std::call_once(flag, &mi::ModelRefInfoRepoPackage::registerPackage);
}

/// Nothing is torn down through this entry point, on purpose.
VW_MODELREF_INFO_API void ZLTerminate_vw_modelref_info() {}
}
