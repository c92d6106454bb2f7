// What a model knows of its proxies, and of the elements that took a proxy's place without being contained there.
#pragma once

#include <quay/zero/journal.h>
#include <quay/zero/proxy_id.h>

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quay::zero {

/// The proxies of a model by element, how they are resolved, and how what they stand for takes their place.
///
/// Resolving is no change, and so no listener hears of it and no undo takes it back alone; but what was done before can
/// only be undone once the proxy is back, so it is recorded all the same. The element that was found gets the place as
/// its container if it has none and is of this model; otherwise the place only refers to it: it neither destroys nor
/// releases the element.
class QUAY_ZERO_API Proxies {
public:
    using Element = ModelElement::Impl;
    using Resolver = std::function<ModelElement(ProxyId const&)>;
    /// Makes an element of that class with its defaults that the model doesn't list, or answers an empty handle if the
    /// class is missing or abstract.
    using Factory = ModelElement (*)(meta::Class const& metaClass, ElementImpl& model);

    Proxies(ElementImpl& model, Journal& journal, ElementDirectory const& elements, Listeners const& listeners) noexcept
        : model_(model), journal_(journal), elements_(elements), listeners_(listeners) {}
    Proxies(Proxies const&) = delete;
    Proxies& operator=(Proxies const&) = delete;

    /// Set once, by the layer that knows how elements are built.
    static void setFactory(Factory factory) noexcept;

    // --- What is a proxy.

    /// Elements that stand for one that isn't loaded; see ModelImpl::createProxy.
    ModelElement create(meta::Class const& metaClass, ProxyId const& id);
    /// The element is a proxy from now on.
    void setId(Element& e, ProxyId id);
    /// What a proxy stands for; null for any other element.
    ProxyId const* idOf(Element const& e) const noexcept;
    bool any() const noexcept { return !ids_.empty(); }
    /// The live proxies of elements with that id.
    std::vector<ModelElement> standingFor(boost::uuids::uuid const& id) const;

    // --- Resolving.

    std::u16string const& storeName() const noexcept { return storeName_; }
    void setStoreName(std::u16string name) { storeName_ = std::move(name); }
    void setResolver(Resolver resolver) { resolver_ = std::move(resolver); }
    /// While above 0, getters resolve nothing.
    int holds() const noexcept { return holds_; }
    void hold() noexcept { ++holds_; }
    void letResolve() noexcept { --holds_; }
    /// See ModelImpl::resolveProxy.
    ModelElement resolve(Element const* referrer, ModelElement const& proxy);

    // --- Taking the place. For what stands in a Resolution.

    /// The proxy leaves the owner's property of that index, and the element that was found gets its place: as its
    /// container, or as a reference. The content of the property is left to the caller.
    void takePlace(Element& proxy, Element& found, Element& owner, std::uint16_t index) noexcept;
    /// What was found takes the proxy's place in the slot of one child, content and record included.
    void resolveSlot(Element& owner, PropertyDescriptor const& slot, ModelElement const& proxy,
                     ModelElement const& found);

    // --- Ends.

    /// The element is being destroyed: it leaves the collections that refer to it without containing it. A single place
    /// empties itself.
    void leaveReferences(Element& e);
    /// The element is gone.
    void forget(Element const& e) noexcept;
    /// The model ends: calls f(Element&) for each proxy and forgets all. Answers the owners of references, to be let go
    /// when no element is left that knows the model.
    template <class F>
    auto clear(F&& f) noexcept {
        for (auto const& entry : ids_) f(const_cast<Element&>(*entry.first));
        ids_.clear();
        return std::exchange(references_, {});
    }

private:
    /// A place that refers to an element without containing it.
    struct Reference {
        ModelElement owner;
        std::uint16_t index;
    };

    ModelElement askResolver(ModelElement const& proxy);
    void noteReference(Element& found, Element& owner, std::uint16_t index) noexcept;

    ElementImpl& model_;
    Journal& journal_;
    ElementDirectory const& elements_;
    Listeners const& listeners_;
    std::u16string storeName_;
    Resolver resolver_;
    int holds_ = 0;
    std::unordered_map<Element const*, ProxyId> ids_;  // those that are gone leave it
    std::unordered_map<Element const*, std::vector<Reference>> references_;
    std::vector<Element const*> asking_;  // proxies that the resolver is being asked for
};

}  // namespace quay::zero
