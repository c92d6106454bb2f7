#include <quay/zero/changes.h>

namespace quay::zero {

ModelElement::Impl::Changes::Changes(boost::uuids::uuid const& id, Model const& model, meta::Class const& metaClass,
                                     unsigned long bits)
    : id_(id), model_(model), metaClass_(metaClass), changed_(bits + 1) {}

ModelElement::Impl::Changes::~Changes() = default;

}  // namespace quay::zero
