// The collection protocols of an item's collections.
#pragma once

#include "workshop_items.h"

namespace workshop {

ordo::OrdoCollection const& sequenceOfItems();
ordo::OrdoCollection const& setOfItems();
ordo::OrdoCollection const& mapOfItems();
ordo::OrdoCollection const& multimapOfItems();
ordo::OrdoCollection const& setOfTexts();

}  // namespace workshop
