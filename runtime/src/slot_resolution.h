// The record of a resolution in the slot of one child.
#pragma once

#include <quay/zero/model_element.h>
#include <quay/zero/property_row.h>

#include <utility>

namespace quay::zero {

/// The slot's old values are undone apart from this, and absolutely: so it puts the proxy back only where the slot
/// still has what was found, and the other way round.
struct SlotResolution {
    PropertyRow const* row;
    ModelElement there;
    ModelElement away;

    void exchange(ModelElement::Impl& owner) noexcept {
        Cell content;
        content.emplace<ModelElement>(away);
        row->exchange(owner, content);
        if (content.get<ModelElement>() != there) row->exchange(owner, content);
        row->discard(content);
        std::swap(there, away);
    }
};

}  // namespace quay::zero
