#include <ordo/collection.h>

namespace ordo {

OrdoCollection::~OrdoCollection() = default;
OrdoValue OrdoCollection::at(void*, std::size_t) const { return {}; }
std::vector<OrdoValue> OrdoCollection::keys(void*) const { return {}; }
std::vector<OrdoValue> OrdoCollection::find(void*, OrdoValue const&) const { return {}; }

}  // namespace ordo
