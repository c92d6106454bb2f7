#include <quay/zero/owned_collection.h>
#include <quay/zero/step.h>

namespace quay::zero {

namespace {

template <class... F>
struct Overloaded : F... {
    using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

}  // namespace

void ContainerStep::exchange() noexcept {
    std::swap(container, child->container_);
    std::swap(index, child->containmentIndex_);
}

void SlotStep::exchange() noexcept {
    Cell content;
    content.emplace<ModelElement>(absent);
    slot->exchange(*owner, content);
    if (content.get<ModelElement>() != present) slot->exchange(*owner, content);
    slot->discard(content);
    std::swap(present, absent);
}

// NOLINTBEGIN(bugprone-exception-escape): moving a change never throws, so there always is one to visit
AbstractOwnedCollection* Step::collection() const noexcept {
    return std::visit(Overloaded{[](ContainerStep const&) -> AbstractOwnedCollection* { return nullptr; },
                                 [](SlotStep const&) -> AbstractOwnedCollection* { return nullptr; },
                                 [](auto const& of) { return of.collection; }},
                      change_);
}

ModelElement::Impl& Step::changed() const noexcept {
    return std::visit(Overloaded{[](ContainerStep const& c) -> ModelElement::Impl& { return *c.child; },
                                 [](SlotStep const& s) -> ModelElement::Impl& { return *s.owner; },
                                 [](auto const& of) -> ModelElement::Impl& { return *of.collection->owner(); }},
                      change_);
}

void Step::prepare() {
    auto* const run = as<RunStep>();
    if (run != nullptr && run->isIn) run->collection->prepareRun(*run);
}

void Step::exchange() noexcept {
    std::visit(Overloaded{[](RunStep& step) { step.collection->exchangeRun(step); },
                          [](MemberStep& step) { step.collection->exchangeMember(step); },
                          [](EntryStep& step) { step.collection->exchangeEntry(step); },
                          [](ProxyStep& step) { step.collection->exchangeProxy(step); },
                          [](ContentStep& step) { step.collection->exchangeContent(step); }, [](AnnouncementStep&) {},
                          [](ContainerStep& step) { step.exchange(); }, [](SlotStep& step) { step.exchange(); }},
               change_);
}

// NOLINTEND(bugprone-exception-escape)

}  // namespace quay::zero
