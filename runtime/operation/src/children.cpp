#include <quay/zero/children.h>
#include <quay/zero/collection.h>
#include <quay/zero/property_descriptor.h>

#include <algorithm>

namespace quay::zero {

bool isSeveral(meta::Property const& property) {
    return property->getFlags() != ValueFlags::One && property->getFlags() != ValueFlags::Optional;
}

std::vector<ModelElement> membersOf(ModelElement::Impl const& element, PropertyDescriptor const& descriptor) {
    std::vector<ModelElement> members;
    if (descriptor.kind() == PropertyKind::Child) {
        if (!descriptor.has(element)) return members;
        if (ModelElement child = descriptor.child(element)) members.push_back(std::move(child));
        return members;
    }
    auto& collection = static_cast<ReferenceCollection&>(*descriptor.collection(element));
    if (collection.holdsNothing()) return members;
    collection.resolveAll();
    members = collection.getAllValuesAndProxies();
    std::erase_if(members, [](ModelElement const& e) { return !e; });  // they are contained elsewhere, and died there
    return members;
}

std::vector<ModelElement> membersOf(ModelElement const& element, meta::Property const& property) {
    PropertyDescriptor const* const descriptor = element->descriptorOf(property);
    if (descriptor == nullptr || !descriptor->ownsElements()) return {};
    std::vector<ModelElement> members = membersOf(*element.impl(), *descriptor);
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
