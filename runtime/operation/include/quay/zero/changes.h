// Which properties of an element changed.
#pragma once

#include <quay/zero/model.h>

#include <boost/dynamic_bitset.hpp>

namespace quay::zero {

/// Which properties of an element changed: identity, model, class and a mask with a bit per property index.
class QUAY_ZERO_API ModelElement::Impl::Changes {
public:
    /// The mask has room for `bits` positions and one more, so that the highest index of the class always has a bit.
    Changes(boost::uuids::uuid const& id, Model const& model, meta::Class const& metaClass, unsigned long bits);
    virtual ~Changes();

    boost::uuids::uuid const& uuid() const noexcept { return id_; }
    Model const& getModel() const noexcept { return model_; }
    meta::Class const& getMetaClass() const noexcept { return metaClass_; }
    boost::dynamic_bitset<unsigned long>& changed() noexcept { return changed_; }
    boost::dynamic_bitset<unsigned long> const& changed() const noexcept { return changed_; }

private:
    boost::uuids::uuid id_;
    Model model_;
    meta::Class metaClass_;
    boost::dynamic_bitset<unsigned long> changed_;
};

}  // namespace quay::zero
