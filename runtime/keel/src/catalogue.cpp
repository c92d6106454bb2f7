#include <keel/catalogue.h>

#include "standard_sentences.h"

#include <mutex>
#include <utility>

namespace keel {

Catalogue& Catalogue::instance() {
    // Never destroyed: exceptions can still be made while the process ends.
    static auto* const catalogue = new Catalogue;
    return *catalogue;
}

Catalogue::Catalogue() {
    for (StandardEntry& entry : standardSentences()) {
        entries_.emplace(entry.identifier, std::move(entry.sentences));
    }
}

void Catalogue::add(std::string_view identifier, std::vector<std::string> sentences) {
    std::unique_lock const lock(mutex_);
    entries_.insert_or_assign(std::string(identifier), std::move(sentences));
}

std::vector<std::string> Catalogue::sentences(std::string_view identifier) const {
    std::shared_lock const lock(mutex_);
    auto const entry = entries_.find(identifier);
    return entry != entries_.end() ? entry->second : std::vector<std::string>();
}

}  // namespace keel
