#include <quay/zero/builder.h>
#include <quay/zero/elements/handle.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

namespace quay::zero::elements {

ModelElement::Builder& requireBuilderOf(ClassTable const& table, ModelElement::Builder& builder) {
    if (!builder.classTable().conformsTo(table)) reportException(quay0::messages::InvalidValue());
    return builder;
}

}  // namespace quay::zero::elements
