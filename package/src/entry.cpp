// How the library comes up when it is loaded, and its entry points.
#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>

#include <ModelRefInfoRepo/export.h>

#include <exception>

namespace {

/// Brings the schema up while the library is being loaded. If that fails the load goes on without it: an exception
/// could not leave a static initialiser, and the next call of getInstance starts anew and tells its caller why.
struct BringUp {
    BringUp() noexcept {
        try {
            MetaPackageVw_modelref_info::getInstance();
        } catch (std::exception const&) {  // NOLINT(bugprone-empty-catch): see above
        }
    }
};

BringUp const bringUp;

}  // namespace

extern "C" {

/// Registers the script package; called by the script environment's module loader. The schema is up already.
VW_MODELREF_INFO_API void ZLInitialize_vw_modelref_info() {}

/// Nothing is torn down through this entry point, on purpose.
VW_MODELREF_INFO_API void ZLTerminate_vw_modelref_info() {}
}
