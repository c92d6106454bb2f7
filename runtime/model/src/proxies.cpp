#include <quay/zero/proxies.h>
#include <quay/zero/report.h>
#include <quay/zero/resolution.h>
#include <quay/zero/step.h>

#include <quay0/messages.h>

#include <algorithm>
#include <new>
#include <unordered_map>

namespace quay::zero {

namespace {

constinit Proxies::Factory elementFactory = nullptr;

}  // namespace

struct Proxies::Tables {
    /// A property that refers to an element without containing it.
    struct Reference {
        ModelElement owner;
        std::uint16_t index;
    };

    std::unordered_map<Element const*, ProxyId> ids;  // an entry is erased when its proxy is released
    std::unordered_map<Element const*, std::vector<Reference>> references;
};

Proxies::Proxies(ElementImpl& model, Journal& journal, ElementDirectory const& elements,
                 Listeners const& listeners) noexcept
    : model_(model), journal_(journal), elements_(elements), listeners_(listeners) {}
Proxies::~Proxies() = default;

Proxies::Tables& Proxies::tables() {
    if (tables_ == nullptr) tables_ = std::make_unique<Tables>();
    return *tables_;
}

void Proxies::setFactory(Factory factory) noexcept { elementFactory = factory; }

// --- What is a proxy ------------------------------------------------------------------------------------------------

ModelElement Proxies::create(meta::Class const& metaClass, ProxyId const& id) {
    ModelElement made = metaClass ? elementFactory(metaClass, model_) : ModelElement();
    if (!made) reportException(quay0::messages::InvalidValue().about(u"the class of a proxy"));
    if (!id.id().is_nil()) made.impl()->id_ = id.id();
    setId(*made.impl(), id);
    return made;
}

void Proxies::setId(Element& e, ProxyId id) {
    tables().ids.insert_or_assign(&e, std::move(id));
    e.setFlag(Element::kProxy, true);
}

ProxyId const* Proxies::idOf(Element const& e) const noexcept {
    if (tables_ == nullptr) return nullptr;
    auto const found = tables_->ids.find(&e);
    return found == tables_->ids.end() ? nullptr : &found->second;
}

bool Proxies::any() const noexcept { return tables_ != nullptr && !tables_->ids.empty(); }

std::vector<ModelElement> Proxies::standingFor(boost::uuids::uuid const& id) const {
    std::vector<ModelElement> result;
    if (tables_ == nullptr) return result;
    for (auto const& [proxy, of] : tables_->ids) {
        if (of.id() == id && proxy->isAlive()) result.emplace_back(const_cast<Element*>(proxy));
    }
    return result;
}

void Proxies::forgetInTables(Element const& e) noexcept {
    if (!tables_->ids.empty()) tables_->ids.erase(&e);
    if ((e.flags_ & Element::kReferenced) != 0) tables_->references.erase(&e);
}

void Proxies::endAll(void (*end)(Element&)) noexcept {
    if (tables_ == nullptr) return;
    for (auto const& entry : tables_->ids) end(const_cast<Element&>(*entry.first));
    tables_->ids.clear();
}

// --- Resolving ------------------------------------------------------------------------------------------------------

ModelElement Proxies::resolve(Element const* referrer, ModelElement const& proxy) {
    ProxyId const* const id = proxy && proxy->isProxy() ? idOf(*proxy.impl()) : nullptr;
    // Inside a transaction, resolving is recorded, which a frozen model refuses.
    bool const isLocked = listeners_.isTelling() || (listeners_.isFrozen() && journal_.inTransaction());
    if (id == nullptr || holds_ > 0 || isLocked) return proxy;
    CountedHandle const alive(&model_);  // the resolver may release the last handle of the model
    ModelElement const found =
        id->hasOutsidePart(storeName_) ? askResolver(proxy) : ModelElement(elements_.find(id->id()));
    bool fits = found && !found->isProxy() && found->classTable().conformsTo(proxy->classTable());
    for (auto const* above = referrer; above != nullptr; above = above->containerImpl()) {
        if (above == found.impl()) fits = false;
    }
    return fits ? found : proxy;
}

/// Calls the resolver, unless it is being asked for this proxy already. The resolver may do anything, such as load
/// elements into this model, or read the property that holds the proxy.
ModelElement Proxies::askResolver(ModelElement const& proxy) {
    if (!resolver_ || std::find(asking_.begin(), asking_.end(), proxy.impl()) != asking_.end()) return {};
    struct Asking {
        Asking(std::vector<Element const*>& all, Element const* one) : all_(all) { all_.push_back(one); }
        ~Asking() { all_.pop_back(); }
        std::vector<Element const*>& all_;
    } const asking(asking_, proxy.impl());
    Resolver const resolver = resolver_;
    ProxyId const id = *idOf(*proxy.impl());
    return resolver(id);
}

// --- Taking the place -----------------------------------------------------------------------------------------------

void Proxies::takePlace(Element& proxy, Element& found, Element& owner, std::uint16_t index) noexcept {
    if (proxy.container_ == &owner && proxy.containmentIndex_ == index) journal_.resolveContainer(proxy, nullptr, 0);
    if (&found.model() != &owner.model()) return;
    if (found.container_ == nullptr) {
        journal_.resolveContainer(found, &owner, index);
    } else {
        noteReference(found, owner, index);
    }
}

/// Notes a reference without containment. If memory runs out, it isn't noted: the property then keeps a handle to the
/// element even after that is destroyed.
void Proxies::noteReference(Element& found, Element& owner, std::uint16_t index) noexcept {
    try {
        auto& places = tables().references[&found];
        bool const isKnown = std::any_of(places.begin(), places.end(), [&](Tables::Reference const& place) {
            return place.owner.impl() == &owner && place.index == index;
        });
        if (!isKnown) places.push_back({ModelElement(&owner), index});
        found.setFlag(Element::kReferenced, true);
    } catch (std::bad_alloc const&) {  // NOLINT(bugprone-empty-catch): see above
    }
}

void Proxies::leaveAllReferences(Element& e) {
    std::vector<Tables::Reference> const places = tables().references[&e];  // a copy: the original may change meanwhile
    for (Tables::Reference const& place : places) {
        if (!place.owner || place.owner->isProxy()) continue;
        PropertyDescriptor const& property = *place.owner->classTable().descriptorAt(place.index);
        if (property.collection(*place.owner.impl()) != nullptr) {
            property.leave(*place.owner.impl(), ModelElement(&e));
        }
    }
}

void Proxies::resolveSlot(Element& owner, PropertyDescriptor const& slot, ModelElement const& proxy,
                          ModelElement const& found) {
    Resolution resolution(journal_);
    journal_.recordResolution(SlotStep{&owner, &slot, found, proxy}, owner);
    Cell content;
    content.emplace<ModelElement>(found);
    slot.exchange(owner, content);
    slot.discard(content);
    takePlace(*proxy.impl(), *found.impl(), owner, slot.index());
    resolution.commit();
}

}  // namespace quay::zero
