#include <ordo/type_repository.h>

#include <map>
#include <string_view>
#include <utility>

namespace ordo {
namespace {

using Key = std::pair<std::string_view, std::string_view>;
using Table = std::map<Key, std::unique_ptr<OrdoTypeConverter>>;

Table& table() {
    static auto* const instance = new Table;  // never destroyed: conversions stay for the rest of the process
    return *instance;
}

}  // namespace

OrdoTypeConverter::~OrdoTypeConverter() = default;

OrdoTypeConverter* OrdoTypeRepository::getConversion(InternedName from, InternedName to) {
    auto const found = table().find({from.text(), to.text()});
    return found != table().end() ? found->second.get() : nullptr;
}

std::unique_ptr<OrdoTypeConverter> OrdoTypeRepository::removeConversion(InternedName from, InternedName to) {
    auto const node = table().extract(Key(from.text(), to.text()));
    return node ? std::move(node.mapped()) : nullptr;
}

void OrdoTypeRepository::addConversion(InternedName from, InternedName to,
                                       std::unique_ptr<OrdoTypeConverter> conversion) {
    table().insert_or_assign({from.text(), to.text()}, std::move(conversion));
}

}  // namespace ordo
