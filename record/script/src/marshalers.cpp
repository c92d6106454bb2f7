#include "marshalers.h"

#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>

#include <quay/zero/mi/registration.h>

#include <exception>

namespace ModelRefInfoRepo::mi {

using quay::zero::mi::EmptyParentPackage;

std::array<quay::zero::meta::Type, 10> marshaledTypes() {
    auto const& package = *MetaPackageVw_modelref_info::getInstance();
    return {package.DataClass,          package.DenormalBehavior, package.MessagePortType, package.ModelWideEventType,
            package.QueuePriorityOrder, package.QueueType,        package.SolverMode,      package.vwSolverType,
            package.RateInfo,           package.ServicePortKey};
}

void installMarshalers() {
    auto const& registry = quay::zero::mi::MetaMarshalerRegistry::getInstance();
    for (quay::zero::meta::Type const& type : marshaledTypes()) {
        if (registry.findPropertyMarshaler(type) != nullptr) continue;
        EmptyParentPackage::Registrar::registerTypeMarshaler(type, quay::zero::mi::makeMarshaler(type));
    }
}

namespace {

/// Declares the schema, and registers the marshalers, while the library is being loaded. If that fails, loading goes on
/// without them: an exception can't leave a static initialiser, and the next call of getInstance tries again and throws
/// the reason.
class MarshalerRegistrar {
public:
    MarshalerRegistrar() noexcept {
        try {
            installMarshalers();
        } catch (std::exception const&) {  // NOLINT(bugprone-empty-catch): see above
        }
    }
    ~MarshalerRegistrar() {
        try {
            for (quay::zero::meta::Type const& type : marshaledTypes()) {
                EmptyParentPackage::Registrar::unregisterTypeMarshaler(type);
            }
        } catch (std::exception const&) {  // NOLINT(bugprone-empty-catch): the schema was never declared
        }
    }
    MarshalerRegistrar(MarshalerRegistrar const&) = delete;
    MarshalerRegistrar& operator=(MarshalerRegistrar const&) = delete;
};

MarshalerRegistrar const registrar;

}  // namespace
}  // namespace ModelRefInfoRepo::mi
