#include <quay/zero/children.h>
#include <quay/zero/collection.h>
#include <quay/zero/property_descriptor.h>

#include <algorithm>

namespace quay::zero {

bool isSeveral(meta::Property const& property) {
    return property->getFlags() != ValueFlags::One && property->getFlags() != ValueFlags::Optional;
}

std::vector<ModelElement> membersOf(ModelElement const& element, meta::Property const& property) {
    PropertyDescriptor const* const descriptor = element->descriptorOf(property);
    if (descriptor == nullptr || !descriptor->ownsElements()) return {};
    if (descriptor->kind() == PropertyKind::Child) {
        ModelElement child = descriptor->child(*element.impl());
        return child ? std::vector{std::move(child)} : std::vector<ModelElement>();
    }
    auto& collection = static_cast<ReferenceCollection&>(*descriptor->collection(*element.impl()));
    collection.resolveAll();
    std::vector<ModelElement> members = collection.getAllValuesAndProxies();
    std::erase_if(members, [](ModelElement const& e) { return !e; });  // they are contained elsewhere, and died there
    if (property->getFlags() == ValueFlags::Set) {
        std::sort(members.begin(), members.end(), [](auto& a, auto& b) { return a->uuid() < b->uuid(); });
    }
    return members;
}

bool contains(ModelElement const& element, meta::Property const& property, ModelElement const& member) {
    return !member->isProxy() && element->owns(*member.impl()) && member->containmentFeature() == property;
}

std::vector<ModelElement> childrenOf(ModelElement const& element, meta::Property const& property) {
    std::vector<ModelElement> members = membersOf(element, property);
    std::erase_if(members, [&](ModelElement const& member) { return !contains(element, property, member); });
    return members;
}

}  // namespace quay::zero
