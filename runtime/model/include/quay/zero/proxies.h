// The proxies of a model, and its references without containment.
#pragma once

#include <quay/zero/journal.h>
#include <quay/zero/proxy_id.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quay::zero {

/// The proxies of a model by element, how they are resolved, and how the elements that they stand for take their
/// places.
///
/// Resolving isn't a change: listeners aren't told, and it can't be undone by itself. It is recorded all the same,
/// since older changes can only be undone once the proxy is back in its place. If the element that was found has no
/// container and is of this model, the place contains it. Otherwise the place becomes a reference without containment,
/// which neither destroys nor releases the element.
class QUAY_ZERO_API Proxies {
public:
    using Element = ModelElement::Impl;
    using Resolver = std::function<ModelElement(ProxyId const&)>;
    /// Creates an element of that class with its defaults, which the model doesn't list. Returns an empty handle if the
    /// class is missing or abstract.
    using Factory = ModelElement (*)(meta::Class const& metaClass, ElementImpl& model);

    Proxies(ElementImpl& model, Journal& journal, ElementDirectory const& elements,
            Listeners const& listeners) noexcept;
    ~Proxies();
    Proxies(Proxies const&) = delete;
    Proxies& operator=(Proxies const&) = delete;

    /// Sets the factory. Called once, by the layer that has builders.
    static void setFactory(Factory factory) noexcept;

    // --- What is a proxy.

    /// Creates a proxy; see ModelImpl::createProxy.
    ModelElement create(meta::Class const& metaClass, ProxyId const& id);
    /// Makes the element a proxy with that id.
    void setId(Element& e, ProxyId id);
    /// What a proxy stands for; null for any other element.
    ProxyId const* idOf(Element const& e) const noexcept;
    bool any() const noexcept;
    /// The live proxies that stand for the element of that id.
    std::vector<ModelElement> standingFor(boost::uuids::uuid const& id) const;

    // --- Resolving.

    std::u16string const& storeName() const noexcept { return storeName_; }
    void setStoreName(std::u16string name) { storeName_ = std::move(name); }
    void setResolver(Resolver resolver) { resolver_ = std::move(resolver); }
    /// The number of holds. While it isn't 0, getters resolve nothing.
    int holds() const noexcept { return holds_; }
    void hold() noexcept { ++holds_; }
    void letResolve() noexcept { --holds_; }
    /// See ModelImpl::resolveProxy.
    ModelElement resolve(Element const* referrer, ModelElement const& proxy);

    // --- Taking the place. To be called inside a Resolution.

    /// Clears the proxy's container, which is the owner's property of that index, and either makes that property
    /// contain the element that was found or notes a reference without containment. The caller changes the content of
    /// the property.
    void takePlace(Element& proxy, Element& found, Element& owner, std::uint16_t index) noexcept;
    /// Puts the element that was found into the slot of one child in place of the proxy, and records that.
    void resolveSlot(Element& owner, PropertyDescriptor const& slot, ModelElement const& proxy,
                     ModelElement const& found);

    // --- Destroying and releasing.

    /// To be called before an element is destroyed: removes it from the collections that refer to it without containing
    /// it. A slot of one child isn't changed, since its handle tests false afterwards.
    void leaveReferences(Element& e) {
        if ((e.flags_ & Element::kReferenced) != 0) leaveAllReferences(e);
    }
    /// To be called when an element is released.
    void forget(Element const& e) noexcept {
        if (tables_ != nullptr) forgetInTables(e);
    }
    /// To be called when the model is destroyed: calls `end` for each proxy and forgets the proxies. The owners of
    /// references live until this is destroyed, when no element may point at the model any more.
    void endAll(void (*end)(Element&)) noexcept;

private:
    struct Tables;

    Tables& tables();
    void forgetInTables(Element const& e) noexcept;
    void leaveAllReferences(Element& e);
    ModelElement askResolver(ModelElement const& proxy);
    void noteReference(Element& found, Element& owner, std::uint16_t index) noexcept;

    ElementImpl& model_;
    Journal& journal_;
    ElementDirectory const& elements_;
    Listeners const& listeners_;
    std::u16string storeName_;
    Resolver resolver_;
    int holds_ = 0;
    std::unique_ptr<Tables> tables_;      // null while there was neither a proxy nor a reference
    std::vector<Element const*> asking_;  // proxies that the resolver is being asked for
};

}  // namespace quay::zero
