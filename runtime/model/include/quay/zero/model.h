// Models: where elements live, are found, and are written in transactions.
//
// A model is a facade over four parts, each usable and testable by itself: the journal (open transactions, history),
// the element directory (list, ids, classes), the proxies, and the listeners with the locks. Users call the model;
// element code calls the parts.
#pragma once

#include <quay/zero/element_directory.h>
#include <quay/zero/journal.h>
#include <quay/zero/listeners.h>
#include <quay/zero/model_element.h>
#include <quay/zero/proxies.h>
#include <quay/zero/savepoint.h>
#include <quay/zero/transaction.h>

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace quay::zero {

/// How findElement looks for an element.
enum class FindElementBehavior : int {
    ResolveProxies = 0,  ///< live elements, and what a proxy of that id resolves to
    InMemoryOnly = 1     ///< only what is in memory; nothing is loaded
};

/// A handle to a model. While one is held the model lives; with the last one its elements turn dead and are released.
class QUAY_ZERO_API Model : public CountedHandle {
public:
    using Impl = ModelImpl;
    class Freezer;
    class Thawer;
    class ResolutionHold;

    Model() noexcept = default;
    explicit Model(ModelImpl* impl) noexcept;

    static Model create();
    static meta::Class const& metaClass();

    ModelImpl* impl() const noexcept;
    ModelImpl* operator->() const noexcept { return impl(); }
};

/// A model. One thread at a time works in it.
class QUAY_ZERO_API ModelImpl final : public JournalOwner {
public:
    using Listener = Listeners::Listener;
    using ProxyResolver = Proxies::Resolver;

    explicit ModelImpl(boost::uuids::uuid const& id) : JournalOwner(id) {}
    ~ModelImpl() override;
    /// The model of all elements that have none: it has no elements and refuses every transaction.
    static ModelImpl& closed() noexcept;

    // --- Transactions and history.

    /// Opens a transaction, or a savepoint in the open one. `system`: when it is the outermost, no listener is told and
    /// nothing enters the history (and one that changed something ends what could be undone, which could no longer be
    /// put back in order). ModelIsFrozen on a frozen model, ListenerMayNotWrite from a listener.
    Transaction beginTransaction(bool system) { return {*this, journal_, journal_.open(system)}; }
    bool inTransaction() const noexcept { return journal_.inTransaction(); }

    /// Keeps the last `limit` committed transactions for undo; 0, the state at the start, keeps none and forgets. What
    /// could be redone is dropped. ListenerMayNotWrite from a listener.
    void enableHistory(std::size_t limit) { journal_.enableHistory(limit); }
    /// Takes the last kept transaction back, or does it again; listeners are told as of any transaction. Answers
    /// whether there was one. TransactionIsOpen inside a transaction.
    bool undo() { return journal_.replay(false); }
    bool redo() { return journal_.replay(true); }
    std::size_t undoDepth() const noexcept { return journal_.undoDepth(); }
    std::size_t redoDepth() const noexcept { return journal_.redoDepth(); }

    /// The listener is called once per outermost commit that changed something. It may not write into the model. What
    /// it throws is dropped: the commit stands, and the other listeners are told.
    std::uint64_t addListener(Listener listener);
    void removeListener(std::uint64_t id);

    // --- Elements.

    /// Live elements in order of creation; roots are those without a container.
    std::vector<ModelElement> getElements() const;
    std::vector<ModelElement> getRoots() const;
    std::size_t elementCount() const noexcept { return elements_.size(); }
    /// The element of that id, or an empty handle. The first look-up after creations indexes them.
    ModelElement findElement(boost::uuids::uuid const& id, FindElementBehavior behavior) const;
    /// Calls f(ModelElement::Impl&) for each live element in order of creation. f may not create or destroy.
    template <class F>
    void forEachElement(F&& f) const {
        elements_.list().forEach(std::forward<F>(f));
    }

    // --- Proxies.

    /// The name by which other stores refer to this model; empty at the start.
    void setStoreName(std::u16string name) { proxies_.setStoreName(std::move(name)); }
    std::u16string const& storeName() const noexcept { return proxies_.storeName(); }
    /// Resolves proxies that name another store.
    void setProxyResolver(ProxyResolver resolver) { proxies_.setResolver(std::move(resolver)); }
    /// An element that stands for one that isn't loaded: alive, of that class and with that id, but not found by it,
    /// and without values. Once it stands in a property of an element, reading there resolves it. InvalidValue for a
    /// class that is missing or abstract.
    ModelElement createProxy(meta::Class const& metaClass, ProxyId const& id) { return proxies_.create(metaClass, id); }
    /// The element that a proxy stands for, or the proxy itself while it can't be resolved: nobody knows the element,
    /// it is of another class, or it contains the referrer; a ResolutionHold lives, or listeners are being told. The
    /// host's resolver may throw, which is passed on. No change.
    ModelElement resolveProxy(ModelElement::Impl const* referrer, ModelElement const& proxy) {
        return proxies_.resolve(referrer, proxy);
    }

    // --- For element code.

    Journal& journal() noexcept { return journal_; }
    ElementDirectory& elements() noexcept { return elements_; }
    ElementDirectory const& elements() const noexcept { return elements_; }
    Proxies& proxies() noexcept { return proxies_; }
    Proxies const& proxies() const noexcept { return proxies_; }
    void setFrozen(bool frozen) noexcept;

private:
    void release(ModelElement::Impl& e) noexcept override;

    ElementDirectory elements_;
    Listeners listeners_;
    Journal journal_{*this, elements_, listeners_};
    Proxies proxies_{*this, journal_, elements_, listeners_};
};

inline Model::Model(ModelImpl* impl) noexcept : CountedHandle(impl) {}
inline ModelImpl* Model::impl() const noexcept { return static_cast<ModelImpl*>(impl_); }

/// Keeps a model frozen, except while a Thawer of it lives. A frozen model refuses every transaction.
class QUAY_ZERO_API Model::Freezer {
public:
    explicit Freezer(Model const& model);
    ~Freezer();
    Freezer(Freezer const&) = delete;
    Freezer& operator=(Freezer const&) = delete;

    /// Lifts the freeze until the result, and every other Thawer, is gone.
    Thawer thaw();

private:
    friend class Thawer;
    Model model_;
    int thaws_ = 0;
};

/// Lifts a freeze while it lives; thawers nest.
class [[nodiscard]] QUAY_ZERO_API Model::Thawer {
public:
    Thawer(Thawer&& other) noexcept : freezer_(std::exchange(other.freezer_, nullptr)) {}
    Thawer& operator=(Thawer&&) = delete;
    ~Thawer();

private:
    friend class Freezer;
    explicit Thawer(Freezer& freezer) noexcept;
    Freezer* freezer_;
};

/// While one lives, no getter of the model resolves a proxy. They nest.
class QUAY_ZERO_API Model::ResolutionHold {
public:
    explicit ResolutionHold(Model const& model);
    ~ResolutionHold();
    ResolutionHold(ResolutionHold const&) = delete;
    ResolutionHold& operator=(ResolutionHold const&) = delete;

private:
    Model model_;
};

}  // namespace quay::zero
