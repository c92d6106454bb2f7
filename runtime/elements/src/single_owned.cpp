#include <quay/zero/elements/single_owned.h>
#include <quay/zero/model.h>

#include <optional>

namespace quay::zero::elements {

ModelElement ChildDescriptor::read(Element const& e) const {
    auto& held = const_cast<ModelElement&>(slot(e));
    if (held.impl() == nullptr) return {};
    if (!held) {
        // A dead child of this model stays visible until the transaction ends; one of another model is removed.
        if (&held->model() != &e.model()) held = ModelElement();
        return held;
    }
    if (held->isProxy()) {
        ModelElement const proxy = held;
        ModelElement const found = e.model().resolveProxy(&e, proxy);
        // The resolver may have written the slot, destroyed its owner, or released the model.
        if (e.isAlive() && held == proxy && found != proxy)
            e.model().proxies().resolveSlot(const_cast<Element&>(e), *this, proxy, found);
    }
    return held;
}

void ChildDescriptor::write(Element& e, ModelElement const& child) const {
    e.requireWritable();
    ModelElement const coming = child;
    if (read(e) == coming) return;
    e.checkCompatibleModel(coming.impl(), std::uint64_t{index()});
    Savepoint savepoint(e.model().journal());
    e.notifyModifying(index());
    ModelElement const going = slot(e);
    if (going && e.owns(*going.impl())) e._basicSetUncontained(going.impl());
    basicWrite(e, coming);
    if (coming) e._setContainedByThis(coming.impl(), index());
    savepoint.commit();
}

void ChildDescriptor::basicWrite(Element& e, ModelElement const& child) const noexcept {
    if (child.impl() != nullptr) e.noteOwned();
    slot(e) = child;
}

void ChildDescriptor::save(Element const& e, Cell& old) const { old.emplace<ModelElement>(slot(e)); }
void ChildDescriptor::exchange(Element& e, Cell& old) const noexcept { std::swap(slot(e), old.get<ModelElement>()); }
void ChildDescriptor::restore(Element& e, Cell const& old) const { basicWrite(e, old.get<ModelElement>()); }
bool ChildDescriptor::unchanged(Element const& e, Cell const& old) const { return slot(e) == old.get<ModelElement>(); }
void ChildDescriptor::discard(Cell& old) const noexcept { old.drop<ModelElement>(); }
void ChildDescriptor::relocate(Cell& from, Cell& to) const noexcept { from.moveTo<ModelElement>(to); }

Value ChildDescriptor::wrap(Element const& /*e*/, meta::Property const& property, Cell& old) const {
    return Value::createElementValue(property, old.get<ModelElement>());
}

bool ChildDescriptor::has(Element const& e) const { return bool(slot(e)); }

Value ChildDescriptor::get(Element const& e, meta::Property const& property, ReflectionPrivateTag const& tag) const {
    return Value::createElementValue(property, tag.mayResolve() ? read(e) : slot(e));
}

void ChildDescriptor::set(Element& e, meta::Property const& /*property*/, Value const& value,
                          ReflectionPrivateTag const& tag) const {
    ModelElement const child = unpack(value);
    // If the tag doesn't allow resolving, a proxy in the slot is replaced without being resolved.
    ModelElement const& held = slot(e);
    std::optional<Model::ResolutionHold> hold;
    if (!tag.mayResolve() && child && !child->isProxy() && held && held->isProxy()) hold.emplace(e.getModel());
    write(e, child);
}

void ChildDescriptor::join(Element& owner, ModelElement const& child) const {
    owner.notifyModifying(index());
    basicWrite(owner, child);
}

void ChildDescriptor::leave(Element& owner, ModelElement const& /*child*/) const {
    owner.notifyModifying(index());
    basicWrite(owner, ModelElement());
}

void ChildDescriptor::disassociate(Element& owner) const {
    if (owner.isWritable()) owner.notifyModifying(index());
    basicWrite(owner, ModelElement());
}

void ChildDescriptor::destroyChildren(Element& owner, bool a, bool b) const {
    ModelElement const child = slot(owner);
    if (!child) return;
    owner.notifyModifying(index());
    if (owner.owns(*child.impl())) child->destroyRecursively(a, false, b);
    basicWrite(owner, ModelElement());
}

}  // namespace quay::zero::elements
