#include "property_failures.h"

#include <ordo/error.h>

#include <quay/zero/report.h>

#include <quay0/messages.h>

namespace quay::zero::mi {

namespace {

template <class M>
void rethrowIf(keel::core::except::Error const& failure, meta::Property const& property) {
    auto const* const found = dynamic_cast<keel::core::except::Exception<M> const*>(&failure);
    if (found == nullptr || found->message().subject()) return;
    M message = found->message();
    reportException(message.about(property->getOwningType()->getName() + u"." + property->getName()));
}

}  // namespace

void rethrowAbout(keel::core::except::Error const& failure, meta::Property const& property) {
    rethrowIf<ordo::Failure>(failure, property);
    rethrowIf<quay0::messages::InvalidValue>(failure, property);
    rethrowIf<quay0::messages::CannotCastIncompatibleTypes>(failure, property);
    rethrowIf<quay0::messages::CannotAddIncompatibleTypes>(failure, property);
    rethrowIf<quay0::messages::CannotCreateCrossModelAssociation>(failure, property);
}

}  // namespace quay::zero::mi
