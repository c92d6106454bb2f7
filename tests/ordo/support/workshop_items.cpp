#include "workshop_items.h"

using ordo::OrdoValue;
using ordo::factory::basic::BindingRegistry;

namespace workshop {

Record& Record::instance() {
    static Record record;
    return record;
}

ItemRef::ItemRef(Item* item) : item_(item) {
    if (item_ != nullptr) {
        item_->addReference();
    }
}

ItemRef::~ItemRef() {
    if (item_ != nullptr) {
        item_->dropReference();
    }
}

// Not inline: otherwise the compiler warns of uses after the delete, which the reference count rules out.
[[gnu::noinline]] void Item::dropReference() {
    if (--references == 0) {
        delete this;
    }
}

void Item::destroy() {
    if (!std::exchange(alive, false)) {
        return;
    }
    for (Members* members : {&parts, &bag, &index, &groups}) {
        std::vector<ItemRef> const ended = std::move(members->items);
        for (ItemRef const& item : ended) {
            item->destroy();
        }
    }
    if (ItemRef const ended = std::move(child); ended.get() != nullptr) {
        ended->destroy();
    }
}

OrdoValue announceItem(Item* item) {
    bool isNew = false;
    bool const isTool = item != nullptr && item->isTool();
    auto object = BindingRegistry::announce(item, ordo::internName(isTool ? "workshop.Tool" : "workshop.Item"), isNew);
    if (isNew) {
        item->addReference();
    }
    return OrdoValue::fromObject(std::move(object));
}

OrdoValue announceMembers(Members& members, char const* className) {
    bool isNew = false;
    auto object = BindingRegistry::announce(static_cast<void const*>(&members), ordo::internName(className), isNew);
    if (isNew) {
        members.owner->addReference();
    }
    return OrdoValue::fromObject(std::move(object));
}

OrdoValue announceTags(Tags& tags) {
    bool isNew = false;
    auto object = BindingRegistry::announce(static_cast<void const*>(&tags), ordo::internName("workshop.Tags"), isNew);
    if (isNew) {
        tags.owner->addReference();
    }
    return OrdoValue::fromObject(std::move(object));
}

ItemRef itemOf(OrdoValue const& value) {
    auto* const item = static_cast<Item*>(value.native(ordo::internName("workshop.Item")));
    if (item == nullptr && !value.isNothing()) {
        ordo::raiseWith(ordo::failures::WrongType, {value.describe(), "an object of class 'workshop.Item'"});
    }
    if (item != nullptr && !item->alive) {
        ordo::raiseInvalidHandle();
    }
    return ItemRef(item);
}

}  // namespace workshop
