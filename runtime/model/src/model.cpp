#include <quay/zero/model.h>

namespace quay::zero {

Model Model::create() {
    ModelImpl::closed();  // made before the first model, since the end of a model may not fail
    return Model(new ModelImpl(ElementImpl::generateNewUuid()));
}

ModelImpl::ModelImpl(boost::uuids::uuid const& id) : JournalOwner(id) {}

ModelImpl& ModelImpl::closed() {
    static ModelImpl& model = []() -> ModelImpl& {
        auto& made = *new ModelImpl(boost::uuids::uuid{});
        made.addRef();
        made.setFlag(kAlive, false);
        made.freeze();
        return made;
    }();
    return model;
}

/// All elements become dead before the first is released, so that no code can reach a partly destroyed model through
/// one.
ModelImpl::~ModelImpl() {
    journal_.forgetHistory();
    auto const end = [](ModelElement::Impl& e) {
        e.setFlag(kAlive, false);
        e.model_ = &closed();
    };
    ModelElement::Impl* const first = elements_.clear();
    proxies_.endAll(end);  // most proxies aren't in the list of elements
    for (auto* e = first; e != nullptr; e = ElementList::next(*e)) end(*e);
    for (auto* e = first; e != nullptr;) {
        auto* const next = ElementList::next(*e);
        e->removeRef();
        e = next;
    }
}

void ModelImpl::release(ModelElement::Impl& e) noexcept {
    elements_.release(e);
    proxies_.forget(e);
    e.model_ = &closed();
    e.track_ = Track();
    e.removeRef();
}

// --- Elements -------------------------------------------------------------------------------------------------------

std::vector<ModelElement> ModelImpl::getElements() const {
    std::vector<ModelElement> result;
    result.reserve(elements_.size());
    forEachElement([&](ModelElement::Impl& e) { result.emplace_back(&e); });
    return result;
}

std::vector<ModelElement> ModelImpl::getRoots() const {
    std::vector<ModelElement> result;
    forEachElement([&](ModelElement::Impl& e) {
        if (e.containerImpl() == nullptr) result.emplace_back(&e);
    });
    return result;
}

ModelElement ModelImpl::findElement(boost::uuids::uuid const& id, FindElementBehavior behavior) const {
    ModelElement found(elements_.find(id));
    if (found || behavior == FindElementBehavior::InMemoryOnly || !proxies_.any()) return found;
    CountedHandle const alive(const_cast<ModelImpl*>(this));  // the resolver may release the last handle of the model
    for (ModelElement const& proxy : proxies_.standingFor(id)) {  // resolving one may destroy others
        found = const_cast<ModelImpl*>(this)->resolveProxy(nullptr, proxy);
        if (found && !found->isProxy()) return found;
    }
    return {};
}

// --- Listeners and locks --------------------------------------------------------------------------------------------

std::uint64_t ModelImpl::addListener(Listener listener) {
    std::uint64_t const id = listeners_.add(std::move(listener));
    journal_.refresh();
    return id;
}

void ModelImpl::removeListener(std::uint64_t id) {
    listeners_.remove(id);
    journal_.refresh();
}

void ModelImpl::freeze() noexcept {
    listeners_.freeze();
    journal_.refresh();
}

void ModelImpl::thaw() noexcept {
    listeners_.thaw();
    journal_.refresh();
}

Model::Freezer::Freezer(Model const& model) : model_(model) { model_->freeze(); }
Model::Freezer::~Freezer() {
    if (thaws_ == 0) model_->thaw();
}

Model::Thawer Model::Freezer::thaw() { return Thawer(*this); }

Model::Thawer::Thawer(Freezer& freezer) noexcept : freezer_(&freezer) {
    if (freezer_->thaws_++ == 0) freezer_->model_->thaw();
}

Model::Thawer::~Thawer() {
    if (freezer_ != nullptr && --freezer_->thaws_ == 0) freezer_->model_->freeze();
}

Model::ResolutionHold::ResolutionHold(Model const& model) : model_(model) { model_->proxies().hold(); }
Model::ResolutionHold::~ResolutionHold() { model_->proxies().letResolve(); }

}  // namespace quay::zero
