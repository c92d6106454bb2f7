#include <ordo/error.h>
#include <ordo/factory/encoding.h>

#include <utility>

namespace ordo {

void raiseWith(std::string_view id, std::vector<std::string> const& arguments) {
    std::vector<std::u16string> units;
    units.reserve(arguments.size());
    for (std::string const& argument : arguments) {
        units.push_back(factory::unitsOf(argument));
    }
    raise(id, std::move(units));
}

}  // namespace ordo
