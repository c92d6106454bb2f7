// The change sets that a model's listeners get, as text.
#pragma once

#include "dump.h"

#include <keel/text.h>
#include <quay/zero/change_set.h>
#include <quay/zero/meta/types.h>

#include <string>
#include <utility>

namespace records {

/// Listens to a model for its whole lifetime.
class Hearer {
public:
    explicit Hearer(quay::zero::Model model) : model_(std::move(model)) {
        id_ = model_->addListener([this](quay::zero::ChangeSet const& c) { hear(c); });
    }
    ~Hearer() { model_->removeListener(id_); }
    Hearer(Hearer const&) = delete;
    Hearer& operator=(Hearer const&) = delete;

    /// The text of all change sets since the last call: for each commit "+created -destroyed property: old -> new",
    /// with the numbers of created and destroyed elements unless they are 0, and a semicolon.
    std::string take() { return std::exchange(heard_, {}); }

private:
    void hear(quay::zero::ChangeSet const& c) {
        if (!c.created().empty()) heard_ += '+' + std::to_string(c.created().size()) + ' ';
        if (!c.destroyed().empty()) heard_ += '-' + std::to_string(c.destroyed().size()) + ' ';
        for (auto const& e : c.changed()) {
            for (auto const& p : e.properties()) {
                heard_ += keel::toUtf8(p->getName()) + ": " + show(e.oldValue(p)) + " -> " + show(e.newValue(p)) + ' ';
            }
        }
        heard_ += ';';
    }

    quay::zero::Model model_;
    std::uint64_t id_;
    std::string heard_;
};

}  // namespace records
