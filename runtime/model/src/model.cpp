#include <quay/zero/change_set.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/model.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

#include <quay/zero/history.h>

namespace quay::zero {

struct ModelImpl::NumberedListener {
    std::uint64_t id;
    Listener call;
};

Model Model::create() { return Model(new ModelImpl(ElementImpl::generateNewUuid())); }

ModelImpl::ModelImpl(boost::uuids::uuid const& id) : ElementImpl(id) {}

ModelImpl::~ModelImpl() {
    history_.reset();
    releaseElements();
    while (freeStorages_ != nullptr) delete std::exchange(freeStorages_, freeStorages_->next_);
}

ModelImpl& ModelImpl::closed() noexcept {
    static ModelImpl& model = []() -> ModelImpl& {
        auto& made = *new ModelImpl(boost::uuids::uuid{});
        made.addRef();
        made.setFlag(kAlive, false);
        made.frozen_ = true;
        made.refreshQuiet();
        return made;
    }();
    return model;
}

/// The model ends: its elements turn dead before the first of them is released, so that none sees half a model.
void ModelImpl::releaseElements() noexcept {
    ModelElement::Impl* const first = elements_.first();
    elements_ = ElementList();
    ids_.clear();
    for (auto const& entry : proxies_) {  // most stand in no list
        auto* const proxy = const_cast<ModelElement::Impl*>(entry.first);
        proxy->setFlag(kAlive, false);
        proxy->model_ = &closed();
    }
    classes_.clear();
    proxies_.clear();
    auto const guests = std::exchange(guests_, {});  // to go when no element is left that knows the model
    for (auto* e = first; e != nullptr; e = ElementList::next(*e)) {
        e->setFlag(kAlive, false);
        e->model_ = &closed();
    }
    for (auto* e = first; e != nullptr;) {
        auto* const next = ElementList::next(*e);
        e->removeRef();
        e = next;
    }
}

// --- Elements -------------------------------------------------------------------------------------------------------

/// The element becomes part of the model.
void ModelImpl::enter(ModelElement::Impl& element) {
    if (inTransaction()) {
        bool const joins = log_.lives.size() > levels_.back().lives && log_.lives.back().born &&
                           log_.lives.back().last == elements_.last();
        if (joins) {
            log_.lives.back().last = &element;
            ++log_.lives.back().count;
        } else {
            log_.lives.emplace_back(true, 1, element);
        }
        element.track_ = Track(levelSerial_);
    }
    element.addRef();
    element.setFlag(kListed, true);
    elements_.append(element);
}

/// The element dies; the log takes over the model's reference.
void ModelImpl::bury(ModelElement::Impl& element) {
    // A proxy was never entered: the model doesn't hold it, so the log counts it itself, as a run of none.
    bool const listed = (element.flags_ & kListed) != 0;
    log_.lives.emplace_back(false, listed ? 1 : 0, element);
    if (listed) {
        ids_.forget(element);
        classes_.leaving(element);
        elements_.takeOut(element, element, 1);
    } else {
        element.addRef();
    }
    element.setFlag(kAlive, false);
}

/// An element that no log can bring back leaves for good.
void ModelImpl::letGo(ModelElement::Impl& element) noexcept {
    ids_.remove(element);
    forgetProxy(element);
    if ((element.flags_ & kGuest) != 0) guests_.erase(&element);
    classes_.remove(element);
    element.model_ = &closed();
    element.track_ = Track();
    element.removeRef();
}

std::vector<ModelElement> ModelImpl::getElements() const {
    std::vector<ModelElement> result;
    result.reserve(elements_.size());
    elements_.forEach([&](ModelElement::Impl& e) { result.emplace_back(&e); });
    return result;
}

std::vector<ModelElement> ModelImpl::getRoots() const {
    std::vector<ModelElement> result;
    elements_.forEach([&](ModelElement::Impl& e) {
        if (e.containerImpl() == nullptr) result.emplace_back(&e);
    });
    return result;
}

ModelElement ModelImpl::findElement(boost::uuids::uuid const& id, FindElementBehavior behavior) const {
    ids_.catchUp(elements_);
    ModelElement found(ids_.find(id));
    if (found || behavior == FindElementBehavior::InMemoryOnly || proxies_.empty()) return found;
    std::vector<ModelElement> standing;  // to resolve one may end others
    for (auto const& [proxy, of] : proxies_) {
        if (of.id() == id && proxy->isAlive()) standing.emplace_back(const_cast<ModelElement::Impl*>(proxy));
    }
    for (ModelElement const& proxy : standing) {
        found = const_cast<ModelImpl*>(this)->resolveProxy(nullptr, proxy);
        if (found && !found->isProxy()) return found;
    }
    return {};
}

// --- Listeners and history ------------------------------------------------------------------------------------------

std::uint64_t ModelImpl::addListener(Listener listener) {
    // Whoever is being told right now goes on with the list that it has.
    auto next = std::make_shared<std::vector<NumberedListener>>();
    if (listeners_) *next = *listeners_;
    next->push_back({lastListener_ + 1, std::move(listener)});
    listeners_ = std::move(next);
    refreshQuiet();
    return ++lastListener_;
}

void ModelImpl::removeListener(std::uint64_t id) {
    if (!listeners_) return;
    auto next = std::make_shared<std::vector<NumberedListener>>(*listeners_);
    std::erase_if(*next, [&](NumberedListener const& l) { return l.id == id; });
    listeners_ = next->empty() ? nullptr : std::move(next);
    refreshQuiet();
}

void ModelImpl::tell(ChangeSet const& changes) noexcept {
    auto const listeners = listeners_;
    telling_ = true;
    refreshQuiet();
    for (NumberedListener const& listener : *listeners) {
        try {
            listener.call(changes);
        } catch (...) {  // NOLINT(bugprone-empty-catch): the commit stands, and the others are to hear of it
        }
    }
    telling_ = false;
    refreshQuiet();
}

void ModelImpl::enableHistory(std::size_t limit) {
    if (telling_) reportException(quay0::messages::ListenerMayNotWrite());  // what is being told may lie in it
    auto history = limit == 0 ? nullptr : std::make_unique<History>(limit);
    if (history && history_) history->takeOver(*history_);
    history_ = std::move(history);
    refreshQuiet();
}

void ModelImpl::endHistory() {
    if (!isAlive()) return;
    requireUnlocked();
    if (history_) history_->clear();
}

std::size_t ModelImpl::undoDepth() const noexcept { return history_ ? history_->doneCount() : 0; }
std::size_t ModelImpl::redoDepth() const noexcept { return history_ ? history_->undoneCount() : 0; }

bool ModelImpl::undo() { return replay(false); }
bool ModelImpl::redo() { return replay(true); }

// --- Freezing and holding -------------------------------------------------------------------------------------------

void ModelImpl::refreshQuiet() noexcept {
    if (!levels_.empty()) return;
    levelSerial_ = listeners_ || history_ || frozen_ || telling_ ? UINT64_MAX >> 1 : 0;
}

Model::Freezer::Freezer(Model const& model) : model_(model) {
    model_->frozen_ = true;
    model_->refreshQuiet();
}

Model::Freezer::~Freezer() {
    model_->frozen_ = false;
    model_->refreshQuiet();
}

Model::Thawer Model::Freezer::thaw() { return Thawer(*this); }

Model::Thawer::Thawer(Freezer& freezer) noexcept : freezer_(&freezer) {
    if (freezer_->thaws_++ == 0) {
        freezer_->model_->frozen_ = false;
        freezer_->model_->refreshQuiet();
    }
}

Model::Thawer::~Thawer() {
    if (freezer_ != nullptr && --freezer_->thaws_ == 0) {
        freezer_->model_->frozen_ = true;
        freezer_->model_->refreshQuiet();
    }
}

Model::ResolutionHold::ResolutionHold(Model const& model) : model_(model) { ++model_->resolutionHolds_; }
Model::ResolutionHold::~ResolutionHold() { --model_->resolutionHolds_; }

}  // namespace quay::zero
