// The record of a resolution in the slot of one child.
#pragma once

#include <quay/zero/model_element.h>
#include <quay/zero/property_descriptor.h>

#include <utility>

namespace quay::zero {

/// The slot's old values are undone apart from this, and absolutely: so it puts the proxy back only where the slot
/// still has what was found, and the other way round.
struct SlotResolution {
    PropertyDescriptor const* descriptor;
    ModelElement there;
    ModelElement away;

    void exchange(ModelElement::Impl& owner) noexcept {
        Cell content;
        content.emplace<ModelElement>(away);
        descriptor->exchange(owner, content);
        if (content.get<ModelElement>() != there) descriptor->exchange(owner, content);
        descriptor->discard(content);
        std::swap(there, away);
    }
};

}  // namespace quay::zero
