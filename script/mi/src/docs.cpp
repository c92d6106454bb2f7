#include <quay/zero/mi/docs.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace quay::zero::mi {

namespace {

using Docs = std::map<std::string, std::map<std::string, std::string, std::less<>>, std::less<>>;

/// Docs by type and member; the type's own doc has the empty name. A replaced text is kept, since callers may hold a
/// view of it; an equal text isn't replaced.
Docs& docs() {
    static auto* const all = new Docs;
    return *all;
}

void enter(Docs::mapped_type& members, std::string_view name, char const* text) {
    auto [place, isNew] = members.try_emplace(std::string(name), text);
    if (isNew || place->second == text) return;
    auto old = members.extract(place);
    members.emplace(old.key(), text);
    static auto* const former = new std::vector<Docs::mapped_type::node_type>;
    former->push_back(std::move(old));
}

}  // namespace

void registerDocs(std::span<TypeDocs const> all) {
    for (TypeDocs const& type : all) {
        Docs::mapped_type& members = docs()[type.type.name];
        enter(members, "", type.type.text);
        for (Doc const& member : type.members) enter(members, member.name, member.text);
    }
}

std::string_view docOf(std::string_view type, std::string_view member) {
    auto const members = docs().find(type);
    if (members == docs().end()) return {};
    auto const found = members->second.find(member);
    return found == members->second.end() ? std::string_view() : std::string_view(found->second);
}

}  // namespace quay::zero::mi
