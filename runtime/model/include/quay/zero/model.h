// Models: where elements live, are found, and are written in transactions.
#pragma once

#include <quay/zero/element_list.h>
#include <quay/zero/model_element.h>
#include <quay/zero/proxy_id.h>
#include <quay/zero/query/class_index.h>
#include <quay/zero/random_ids.h>
#include <quay/zero/storage.h>
#include <quay/zero/transaction.h>
#include <quay/zero/undo_log.h>

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace quay::zero {

class ChangeSet;
class History;

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
class QUAY_ZERO_API ModelImpl final : public ElementImpl {
public:
    using Listener = std::function<void(ChangeSet const&)>;
    using ProxyResolver = std::function<ModelElement(ProxyId const&)>;

    explicit ModelImpl(boost::uuids::uuid const& id);
    ~ModelImpl() override;
    /// The model of all elements that have none: it has no elements and refuses every transaction.
    static ModelImpl& closed() noexcept;

    // --- Transactions and history.

    /// Opens a transaction, or a savepoint in the open one. `system`: when it is the outermost, no listener is told and
    /// nothing enters the history (and one that changed something ends what could be undone, which could no longer be
    /// put back in order). ModelIsFrozen on a frozen model, ListenerMayNotWrite from a listener.
    Transaction beginTransaction(bool system);
    bool inTransaction() const noexcept { return !levels_.empty(); }

    /// Keeps the last `limit` committed transactions for undo; 0, the state at the start, keeps none and forgets. What
    /// could be redone is dropped. ListenerMayNotWrite from a listener.
    void enableHistory(std::size_t limit);
    /// Takes the last kept transaction back, or does it again; listeners are told as of any transaction. Answers
    /// whether there was one. TransactionIsOpen inside a transaction.
    bool undo();
    bool redo();
    std::size_t undoDepth() const noexcept;
    std::size_t redoDepth() const noexcept;

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
    /// A fresh random id, from the model's own generator.
    boost::uuids::uuid drawId() noexcept { return generator_.draw(); }
    /// Calls f(ModelElement::Impl&) for each live element in order of creation. f may not create or destroy.
    template <class F>
    void forEachElement(F&& f) const {
        elements_.forEach(std::forward<F>(f));
    }
    /// All elements by class; the first call after creations costs a step for each of them.
    query::ClassIndex const& elementsByClass() const {
        classes_.catchUp(elements_);
        return classes_;
    }

    // --- Proxies.

    /// The name by which other stores refer to this model; empty at the start.
    void setStoreName(std::u16string name) { storeName_ = std::move(name); }
    std::u16string const& storeName() const noexcept { return storeName_; }
    /// Resolves proxies that name another store.
    void setProxyResolver(ProxyResolver resolver) { resolver_ = std::move(resolver); }
    /// An element that stands for one that isn't loaded: alive, of that class and with that id, but not found by it,
    /// and without values. Once it stands in a property of an element, reading there resolves it. InvalidValue for a
    /// class that is missing or abstract.
    ModelElement createProxy(meta::Class const& metaClass, ProxyId const& id);
    /// The element that a proxy stands for, or the proxy itself while it can't be resolved: nobody knows the element,
    /// it is of another class, or it contains the referrer; a ResolutionHold lives, or listeners are being told. The
    /// host's resolver may throw, which is passed on. No change.
    ModelElement resolveProxy(ModelElement::Impl const* referrer, ModelElement const& proxy);
    /// While above 0, getters resolve nothing.
    int resolutionHolds() const noexcept { return resolutionHolds_; }
    ProxyId const* proxyIdOf(ModelElement::Impl const& element) const noexcept;
    void setProxyId(ModelElement::Impl& element, ProxyId id);
    bool hasProxies() const noexcept { return !proxies_.empty(); }
    void forgetProxy(ModelElement::Impl const& element) noexcept {
        if (!proxies_.empty()) proxies_.erase(&element);
    }

    // --- For element code: what a proxy stands for takes its place. That is no change, and so no listener hears of it
    // and no undo takes it back alone; but what was done before can only be undone once the proxy is back, so it is
    // recorded all the same. The element gets the place as its container if it has none and is of this model; otherwise
    // it is a guest there, which its place neither destroys nor releases.

    class Resolution;
    /// A step of the resolution under way; null if none is needed.
    Step* recordResolution(StepKind kind, void* subject, ModelElement::Impl const& owner) noexcept;
    /// Containers follow: the proxy leaves the owner's property of that index for what was found.
    void noteGuest(ModelElement::Impl& found, ModelElement::Impl& owner, std::uint16_t index) noexcept;
    void dismissGuest(ModelElement::Impl& e);
    void takePlace(ModelElement::Impl& proxy, ModelElement::Impl& found, ModelElement::Impl& owner,
                   std::uint16_t index) noexcept;
    /// The same for the slot of one child, content and record included.
    void resolveSlot(ModelElement::Impl& owner, PropertyDescriptor const& descriptor, ModelElement const& proxy,
                     ModelElement const& found);

    // --- For element code: recording. All but the queries need an open transaction.

    /// No transaction, listener or history, and not frozen: a single value may be stored without further ado.
    bool isQuiet() const noexcept { return levelSerial_ == 0; }
    /// Whether a new value may be stored without a record of the old one: the element was born, or the value kept, at
    /// this level; or the model is quiet.
    bool isRecorded(ModelElement::Impl const& e, PropertyDescriptor const& descriptor) const noexcept {
        if (e.track_.isBirth()) return e.track_.isBornSince(levelSerial_);
        Storage const& s = e.track_.storage();
        return s.serial_ >= levelSerial_ && s.has(descriptor);
    }
    /// The same, answered without a call; false where that would take one.
    bool isSurelyRecorded(ModelElement::Impl const& e, PropertyDescriptor const& descriptor) const noexcept {
        if (e.track_.isBirth()) return e.track_.isBornSince(levelSerial_);
        Storage const& s = e.track_.storage();
        return s.serial_ >= levelSerial_ && s.hasFirst(descriptor);
    }
    /// Whether a single value that is written now is a transaction of which only the history hears. It is then recorded
    /// as one, without opening any.
    bool keepsAlone() const noexcept { return history_ && !inTransaction() && !listeners_ && !frozen_ && !telling_; }
    bool isBornHere(ModelElement::Impl const& e) const noexcept { return isBornSince(e, levelSerial_); }
    static bool isBornSince(ModelElement::Impl const& e, std::uint64_t serial) noexcept {
        return e.track_.isBornSince(serial);
    }
    /// Room for the old value, to be filled at once without throwing. Only if it isn't recorded yet.
    Cell& record(ModelElement::Impl& element, PropertyDescriptor const& descriptor);
    /// Something is about to change without a record, outside a transaction: what could be undone can't be after it.
    /// ListenerMayNotWrite, ModelIsFrozen.
    void noteUnrecorded() {
        if (history_ || telling_ || frozen_) endHistory();
    }
    /// The same where `keepsAlone`: the history gets a transaction of that one value.
    Cell& recordAlone(ModelElement::Impl& element, PropertyDescriptor const& descriptor);
    /// Records a step. Only if the collection's owner (or the child) wasn't born here.
    Step& recordStep(StepKind kind, void* subject);
    /// The last step if it may be merged with: recorded at this level, of that kind and subject; else null.
    Step* lastStep(StepKind kind, void const* subject) noexcept;

    /// The child's container changes, and nothing else.
    void setContainer(ModelElement::Impl& child, ModelElement::Impl* container, std::uint16_t index);

    /// Opens and ends a level; Transaction, Savepoint and ImplicitTransaction are made of these.
    std::uint64_t openLevel(bool system, bool isOperation = false);
    /// Whether the innermost level is an operation's savepoint.
    bool inOperation() const noexcept { return !levels_.empty() && levels_.back().isOperation; }
    bool isOpen(std::uint64_t serial) const noexcept;
    void commitLevel(std::uint64_t serial);
    void rollbackLevel(std::uint64_t serial) noexcept;

private:
    friend class ModelElement::Impl;
    friend class Model;
    friend class UndoLog;
    friend class ChangeSet;
    friend class Model::Freezer;
    friend class Model::Thawer;
    friend class Model::ResolutionHold;

    struct Level {
        Level(std::uint64_t number, UndoLog const& log, bool isSystem, bool isSavepoint) noexcept
            : serial(number),
              lives(log.lives.size()),
              steps(log.steps.size()),
              storages(log.storages),
              system(isSystem),
              isOperation(isSavepoint) {}

        std::uint64_t serial;
        std::size_t lives;
        std::size_t steps;
        Storage* storages;  // where the enclosing level's list begins
        bool system;
        bool isOperation;
    };
    struct NumberedListener;

    void enter(ModelElement::Impl& element);
    void bury(ModelElement::Impl& element);
    void letGo(ModelElement::Impl& element) noexcept;
    void releaseElements() noexcept;

    void endLevel() noexcept;
    void commitInner();
    void dropStepsOfNewborn(std::size_t from, std::uint64_t serial) noexcept;
    void mergeAt(Level const& level) noexcept;
    void endHistory();
    void requireUnlocked() const;
    void commitOutermost();
    void commitUnheard(bool system) noexcept;
    void finish(bool keep) noexcept;
    void unwindTo(Level const& level) noexcept;
    bool replay(bool redo);
    void tell(ChangeSet const& changes) noexcept;
    void refreshQuiet() noexcept;

    static void prepareStep(Step& step);
    static void exchangeStep(Step& step) noexcept;
    static void exchangeSteps(UndoLog& log, std::size_t from) noexcept;
    void exchangeLives(UndoLog& log, std::size_t from, std::vector<ModelElement>* revived,
                       std::vector<ModelElement>* buried) noexcept;
    ModelElement askResolver(ModelElement const& proxy);
    UndoLog* resolutionLog() noexcept;
    static void holdUnlisted(Step& step, ModelElement::Impl& child) noexcept;
    void moveQuietly(ModelElement::Impl& child, ModelElement::Impl* container, std::uint16_t index) noexcept;

    void makeStorage();
    Storage& takeStorage(ModelElement::Impl& element);
    void giveBack(Storage* storage) noexcept;

    // Of the innermost level. While none is open it is above every other, or 0 while the model is quiet: then every
    // element counts as born at it.
    std::uint64_t levelSerial_ = 0;
    bool frozen_ = false;
    bool telling_ = false;
    int resolutionHolds_ = 0;
    std::uint64_t lastSerial_ = 0;
    std::vector<Level> levels_;
    UndoLog log_;
    Storage* freeStorages_ = nullptr;
    ElementList elements_;
    mutable IdIndex ids_;
    mutable query::ClassIndex classes_;
    RandomIds generator_;
    std::unique_ptr<History> history_;
    std::shared_ptr<std::vector<NumberedListener> const> listeners_;
    std::uint64_t lastListener_ = 0;
    std::u16string storeName_;
    ProxyResolver resolver_;
    /// Where else than in its container an element stands, or stood.
    struct GuestPlace {
        ModelElement owner;
        std::uint16_t index;
    };
    std::unordered_map<ModelElement::Impl const*, std::vector<GuestPlace>> guests_;
    std::unordered_map<ModelElement::Impl const*, ProxyId> proxies_;  // those that are gone leave it
    std::vector<ModelElement::Impl const*> asking_;                   // proxies that the resolver is being asked for
};

/// Brackets one resolution. Inside a transaction it is an operation of its own, as any change of a collection is.
class QUAY_ZERO_API ModelImpl::Resolution {
public:
    /// Makes room for all that is recorded, so that what follows can't fail.
    explicit Resolution(ModelImpl& model);
    Resolution(Resolution const&) = delete;
    Resolution& operator=(Resolution const&) = delete;

    void commit();

private:
    std::optional<Savepoint> savepoint_;
};

inline ImplicitTransaction::ImplicitTransaction(ModelImpl& model) {
    if (model.inTransaction()) return;
    model.openLevel(false, true);
    opened_ = &model;
}
inline ImplicitTransaction::~ImplicitTransaction() {
    if (opened_ != nullptr) opened_->rollbackLevel(0);
}
inline void ImplicitTransaction::commit() {
    if (opened_ == nullptr) return;
    opened_->commitLevel(0);
    opened_ = nullptr;
}

inline Savepoint::Savepoint(ModelImpl& model, bool isOperation) {
    if (model.inOperation()) return;
    serial_ = model.openLevel(false, isOperation);
    model_ = &model;
}
inline Savepoint::~Savepoint() {
    if (model_ != nullptr) model_->rollbackLevel(serial_);
}
inline void Savepoint::commit() {
    if (model_ == nullptr) return;
    model_->commitLevel(serial_);
    model_ = nullptr;
}

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
