// The closed set of changes that are undone one by one: those of collections, of containers and of resolved proxies.
//
// A step is recorded when the change is made, and has all that reversing it needs. Reversing turns it into the opposite
// change, so that it serves rollback, undo and redo alike. Changes of collections are reversed by the collection.
#pragma once

#include <quay/zero/model_element.h>
#include <quay/zero/property_descriptor.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <variant>

namespace quay::zero {

/// What a collection keeps in a step: members or entries that are out of it, or the positions of those in it. Each kind
/// of collection has classes of its own.
class StepContent {
public:
    StepContent() = default;
    StepContent(StepContent const&) = delete;
    StepContent& operator=(StepContent const&) = delete;
    virtual ~StepContent() = default;
};

/// `count` members that stand side by side entered a sequence at `position` (`isIn`), or left it.
struct RunStep {
    AbstractOwnedCollection* collection;
    bool isIn;
    std::size_t position;
    std::size_t count;
    ModelElement member;                   // the element that is out, if there is just one
    std::unique_ptr<StepContent> content;  // other members that are out, or memory for them

    /// Whether the two are one run: both entered, side by side, and neither has kept anything.
    bool continuesWith(RunStep const& next) const noexcept {
        return isIn && next.isIn && collection == next.collection && content == nullptr && next.content == nullptr &&
               position + count == next.position;
    }
};

/// A member of a sequence was replaced by another. The step holds the one that is out.
struct MemberStep {
    AbstractOwnedCollection* collection;
    std::size_t position;
    ModelElement member;                   // of a sequence of elements
    std::unique_ptr<StepContent> content;  // of a sequence of values
};

/// An entry was added to a set or map (`isIn`), or removed.
struct EntryStep {
    AbstractOwnedCollection* collection;
    bool isIn;
    std::unique_ptr<StepContent> entry;
};

/// A proxy that is kept apart from the members of a set or map was added (`isIn`), or removed.
struct ProxyStep {
    AbstractOwnedCollection* collection;
    bool isIn;
    std::unique_ptr<StepContent> entry;
};

/// The whole content of a collection was exchanged. The step holds the other content.
struct ContentStep {
    AbstractOwnedCollection* collection;
    std::unique_ptr<StepContent> content;
};

/// A change of a collection was announced; its content is as it was.
struct AnnouncementStep {
    AbstractOwnedCollection* collection;
};

/// An element got another container, or another place in it. The step holds the other one.
struct ContainerStep {
    ModelElement::Impl* child;
    ModelElement::Impl* container;
    std::uint16_t index;
    ModelElement
        held;  // the child, if no list of the model holds it, as with proxies: it must live as long as the step

    void exchange() noexcept;
};

/// In the slot of one child, an element replaced the proxy that stood for it. Old values of the slot are recorded
/// separately and are absolute, so reversing this step changes something only if the slot still holds `present`.
struct SlotStep {
    ModelElement::Impl* owner;
    PropertyDescriptor const* slot;
    ModelElement present;
    ModelElement absent;

    void exchange() noexcept;
};

/// One step of a log.
class QUAY_ZERO_API Step {
public:
    using Change =
        std::variant<RunStep, MemberStep, EntryStep, ProxyStep, ContentStep, AnnouncementStep, ContainerStep, SlotStep>;

    template <class C>
    explicit Step(C change, bool isResolution = false) noexcept
        : change_(std::in_place_type<C>, std::move(change)), isResolution_(isResolution) {}

    /// The change, if it is of that kind; else null.
    template <class C>
    C* as() noexcept {
        return std::get_if<C>(&change_);
    }
    template <class C>
    C const* as() const noexcept {
        return std::get_if<C>(&change_);
    }
    /// Whether the step is part of a resolution: an element replaced its proxy. It is reversed in its turn like a
    /// change, but isn't one.
    bool isResolution() const noexcept { return isResolution_; }
    // NOLINTBEGIN(bugprone-exception-escape): moving a change never throws, so there always is one to visit
    /// The collection that the step changed; null for containers and slots.
    AbstractOwnedCollection* collection() const noexcept;
    /// The element that changed: the collection's owner, the slot's owner, or the child that got another container.
    ModelElement::Impl& changed() const noexcept;
    /// Reserves memory for what `exchange` would take out.
    void prepare();
    /// Reverses the change. The step then describes the opposite change.
    void exchange() noexcept;
    // NOLINTEND(bugprone-exception-escape)

private:
    Change change_;
    bool isResolution_;
};

}  // namespace quay::zero
