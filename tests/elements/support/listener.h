// What a model tells its listeners, as text.
#pragma once

#include "dump.h"

#include <keel/text.h>
#include <quay/zero/change_set.h>
#include <quay/zero/meta/types.h>

#include <string>
#include <utility>

namespace records {

/// Listens to a model for as long as it lives.
class Hearer {
public:
    explicit Hearer(quay::zero::Model model) : model_(std::move(model)) {
        id_ = model_->addListener([this](quay::zero::ChangeSet const& c) { hear(c); });
    }
    ~Hearer() { model_->removeListener(id_); }
    Hearer(Hearer const&) = delete;
    Hearer& operator=(Hearer const&) = delete;

    /// What was heard since the last call: for each commit "+created -destroyed property: old -> new", with
    /// the numbers of created and destroyed elements where there are any, and a semicolon.
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
