// What a model does with proxies: making them, finding what they stand for, and putting that in their place.
#include <quay/zero/builder.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/model.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

#include <quay/zero/history.h>
#include <quay/zero/slot_resolution.h>

#include <algorithm>

namespace quay::zero {

// --- What proxies are -----------------------------------------------------------------------------------------------

ModelElement ModelImpl::createProxy(meta::Class const& metaClass, ProxyId const& id) {
    auto const builder = metaClass ? metaClass->instantiateBuilder(Model(this)) : nullptr;
    if (builder == nullptr) reportException(quay0::messages::InvalidValue().about(u"the class of a proxy"));
    ModelElement made = builder->createSuppressed(boost::uuids::uuid{});
    if (!id.id().is_nil()) made.impl()->id_ = id.id();
    setProxyId(*made.impl(), id);
    return made;
}

ProxyId const* ModelImpl::proxyIdOf(ModelElement::Impl const& element) const noexcept {
    auto const found = proxies_.find(&element);
    return found == proxies_.end() ? nullptr : &found->second;
}

void ModelImpl::setProxyId(ModelElement::Impl& element, ProxyId id) {
    proxies_.insert_or_assign(&element, std::move(id));
    element.setFlag(kProxy, true);
}

// --- What they stand for --------------------------------------------------------------------------------------------

ModelElement ModelImpl::resolveProxy(ModelElement::Impl const* referrer, ModelElement const& proxy) {
    ProxyId const* const id = proxy && proxy->isProxy() ? proxyIdOf(*proxy.impl()) : nullptr;
    // Inside a transaction it is recorded, for which the model mustn't be frozen.
    if (id == nullptr || resolutionHolds_ > 0 || telling_ || (frozen_ && inTransaction())) return proxy;
    ModelElement const found =
        id->hasOutsidePart(storeName_) ? askResolver(proxy) : findElement(id->id(), FindElementBehavior::InMemoryOnly);
    bool fits = found && !found->isProxy() && found->classTable().conformsTo(proxy->classTable());
    for (auto const* above = referrer; above != nullptr; above = above->containerImpl()) {
        if (above == found.impl()) fits = false;
    }
    return fits ? found : proxy;
}

/// The resolver may do anything, such as loading elements into this model, or reading where the proxy stands.
ModelElement ModelImpl::askResolver(ModelElement const& proxy) {
    if (!resolver_ || std::find(asking_.begin(), asking_.end(), proxy.impl()) != asking_.end()) return {};
    struct Asking {
        Asking(std::vector<ModelElement::Impl const*>& all, ModelElement::Impl const* one) : all_(all) {
            all_.push_back(one);
        }
        ~Asking() { all_.pop_back(); }
        std::vector<ModelElement::Impl const*>& all_;
    } const asking(asking_, proxy.impl());
    ProxyResolver const resolver = resolver_;
    ProxyId const id = proxy->getProxyId();
    return resolver(id);
}

// --- Putting that in their place ------------------------------------------------------------------------------------

/// Outside a transaction the history keeps the record, if there is one.
UndoLog* ModelImpl::resolutionLog() noexcept {
    if (inTransaction()) return &log_;
    return history_ ? &history_->resolved() : nullptr;
}

ModelImpl::Resolution::Resolution(ModelImpl& model) {
    if (model.inTransaction() && !model.inOperation()) savepoint_.emplace(model);
    constexpr std::size_t most = 4;  // the proxy leaves, the element comes, and both containers
    if (UndoLog* const log = model.resolutionLog()) log->reserveSteps(most);
}

void ModelImpl::Resolution::commit() {
    if (savepoint_) savepoint_->commit();
}

Step* ModelImpl::recordResolution(StepKind kind, void* subject, ModelElement::Impl const& owner) noexcept {
    UndoLog* const log = resolutionLog();
    if (log == nullptr || (inTransaction() && isBornHere(owner))) return nullptr;
    Step& step = log->steps.emplace_back(kind, subject);
    step.quiet = true;
    return &step;
}

void ModelImpl::takePlace(ModelElement::Impl& proxy, ModelElement::Impl& found, ModelElement::Impl& owner,
                          std::uint16_t index) noexcept {
    if (proxy.container_ == &owner && proxy.containmentIndex_ == index) moveQuietly(proxy, nullptr, 0);
    if (&found.model() != this) return;
    if (found.container_ == nullptr) {
        moveQuietly(found, &owner, index);
    } else {
        noteGuest(found, owner, index);
    }
}

/// Without memory for it, the place keeps the element's handle when that has died.
void ModelImpl::noteGuest(ModelElement::Impl& found, ModelElement::Impl& owner, std::uint16_t index) noexcept {
    try {
        auto& places = guests_[&found];
        bool const isKnown = std::any_of(places.begin(), places.end(), [&](GuestPlace const& place) {
            return place.owner.impl() == &owner && place.index == index;
        });
        if (!isKnown) places.push_back({ModelElement(&owner), index});
        found.setFlag(kGuest, true);
    } catch (std::bad_alloc const&) {  // NOLINT(bugprone-empty-catch): see above
    }
}

/// The element is being destroyed: it leaves the collections that it is a guest in. A single place empties itself.
void ModelImpl::dismissGuest(ModelElement::Impl& e) {
    std::vector<GuestPlace> const places = guests_[&e];  // of our own: leaving may do anything
    for (GuestPlace const& place : places) {
        if (!place.owner || place.owner->isProxy()) continue;
        PropertyDescriptor const& descriptor = *place.owner->classTable().descriptorAt(place.index);
        if (descriptor.collection(*place.owner.impl()) != nullptr)
            descriptor.leave(*place.owner.impl(), ModelElement(&e));
    }
}

void ModelImpl::moveQuietly(ModelElement::Impl& child, ModelElement::Impl* container, std::uint16_t index) noexcept {
    if (Step* const step = recordResolution(StepKind::Contained, &child, child)) {
        step->payload = child.container_;
        step->position = child.containmentIndex_;
        holdUnlisted(*step, child);
    }
    child.container_ = container;
    child.containmentIndex_ = index;
}

void ModelImpl::resolveSlot(ModelElement::Impl& owner, PropertyDescriptor const& descriptor, ModelElement const& proxy,
                            ModelElement const& found) {
    auto record = std::make_unique<SlotResolution>(SlotResolution{&descriptor, found, proxy});
    Resolution resolution(*this);
    if (Step* const step = recordResolution(StepKind::Resolved, &owner, owner)) step->payload = record.release();
    Cell content;
    content.emplace<ModelElement>(found);
    descriptor.exchange(owner, content);
    descriptor.discard(content);
    takePlace(*proxy.impl(), *found.impl(), owner, descriptor.index());
    resolution.commit();
}

}  // namespace quay::zero
