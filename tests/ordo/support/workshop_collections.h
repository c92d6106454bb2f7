#pragma once

#include "workshop.h"

namespace workshop {

/// The script object of an item, or of one of its collections, which keeps the item.
ordo::OrdoValue announceItem(Item* item);
ordo::OrdoValue announceMembers(Members& members, char const* className);
ordo::OrdoValue announceTags(Tags& tags);

ItemRef itemOf(ordo::OrdoValue const& value);

ordo::OrdoCollection const& sequenceOfItems();
ordo::OrdoCollection const& setOfItems();
ordo::OrdoCollection const& mapOfItems();
ordo::OrdoCollection const& multimapOfItems();
ordo::OrdoCollection const& setOfTexts();

}  // namespace workshop
