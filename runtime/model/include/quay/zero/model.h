// Models: sets of elements, which can be found there and are written in transactions.
//
// A model is a facade over four parts, each of which can be used and tested alone: the journal (open transactions,
// history), the element directory (list, ids, classes), the proxies, and the listeners with the locks. Users call the
// model; code of elements calls the parts.
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

/// A handle to a model. The model lives as long as there is a handle; after the last one, its elements are dead and
/// released.
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

/// A model. Only one thread at a time may use it.
class QUAY_ZERO_API ModelImpl final : public JournalOwner {
public:
    using Listener = Listeners::Listener;
    using ProxyResolver = Proxies::Resolver;

    explicit ModelImpl(boost::uuids::uuid const& id);
    ~ModelImpl() override;
    /// The model of elements that have been released from theirs: it has no elements and refuses every transaction.
    /// Only the first call can fail; Model::create makes it.
    static ModelImpl& closed();

    // --- Transactions and history.

    /// Opens a transaction, or a savepoint in the open one. `system`: if it is the outermost one, no listener is told
    /// and nothing enters the history; if it changes something, the history is cleared, since older changes couldn't be
    /// undone any more. Raises ModelIsFrozen on a frozen model, ListenerMayNotWrite in a listener.
    Transaction beginTransaction(bool system = false) { return {*this, journal_, journal_.open(system)}; }
    bool inTransaction() const noexcept { return journal_.inTransaction(); }

    /// Keeps the last `limit` committed transactions for undo; 0, the initial state, discards all and keeps none.
    /// Transactions that could be redone are discarded. Raises ListenerMayNotWrite in a listener.
    void enableHistory(std::size_t limit) { journal_.enableHistory(limit); }
    /// Undoes the last transaction of the history, or redoes the one that was undone last. Listeners are told as of any
    /// transaction. Returns whether there was one. Raises TransactionIsOpen inside a transaction.
    bool undo() { return journal_.replay(false); }
    bool redo() { return journal_.replay(true); }
    std::size_t undoDepth() const noexcept { return journal_.undoDepth(); }
    std::size_t redoDepth() const noexcept { return journal_.redoDepth(); }

    /// The listener is called once for each outermost commit, undo or redo that changed something. It can't write into
    /// the model. What it throws becomes a diagnostic (setDiagnosticHook): the commit stands, and the other listeners
    /// are told.
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
    /// Sets the function that resolves proxies which name another store.
    void setProxyResolver(ProxyResolver resolver) { proxies_.setResolver(std::move(resolver)); }
    /// Creates an element that stands for one that isn't loaded: alive, of that class and with that id, but without
    /// values, and not found by the id. Once it is in a property of an element, reading the property resolves it.
    /// InvalidValue for a class that is missing or abstract.
    ModelElement createProxy(meta::Class const& metaClass, ProxyId const& id) { return proxies_.create(metaClass, id); }
    /// The element that a proxy stands for. Returns the proxy itself if the element isn't found, is of another class or
    /// contains the referrer, while a ResolutionHold exists, and while listeners are being told. An exception of the
    /// resolver is passed on. Resolving isn't a change.
    ModelElement resolveProxy(ModelElement::Impl const* referrer, ModelElement const& proxy) {
        return proxies_.resolve(referrer, proxy);
    }

    // --- For element code.

    Journal& journal() noexcept { return journal_; }
    ElementDirectory& elements() noexcept { return elements_; }
    ElementDirectory const& elements() const noexcept { return elements_; }
    Proxies& proxies() noexcept { return proxies_; }
    Proxies const& proxies() const noexcept { return proxies_; }
    /// Adds or removes a freeze. The model is frozen while there is any.
    void freeze() noexcept;
    void thaw() noexcept;

private:
    void release(ModelElement::Impl& e) noexcept override;

    ElementDirectory elements_;
    Listeners listeners_;
    Journal journal_{*this, elements_, listeners_};
    Proxies proxies_{*this, journal_, elements_, listeners_};
};

inline Model::Model(ModelImpl* impl) noexcept : CountedHandle(impl) {}
inline ModelImpl* Model::impl() const noexcept { return static_cast<ModelImpl*>(impl_); }

/// Keeps a model frozen while it exists, except while one of its Thawers exists. A frozen model refuses every change
/// and every new transaction; one that is open can be committed or rolled back. With several Freezers, the model is
/// frozen while any of them keeps it frozen.
class QUAY_ZERO_API Model::Freezer {
public:
    explicit Freezer(Model const& model);
    ~Freezer();
    Freezer(Freezer const&) = delete;
    Freezer& operator=(Freezer const&) = delete;

    /// Lifts the freeze until the result, and every other Thawer of this Freezer, is destroyed. They must be destroyed
    /// before the Freezer.
    Thawer thaw();

private:
    friend class Thawer;
    Model model_;
    int thaws_ = 0;
};

/// Lifts a freeze while it exists. Several may exist at a time.
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

/// While one exists, no getter of the model resolves a proxy. Several may exist at a time.
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
