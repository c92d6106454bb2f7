#include <quay/zero/element_sequence.h>
#include <quay/zero/position.h>
#include <quay/zero/report.h>
#include <quay/zero/resolution.h>

#include <quay0/messages.h>

#include <algorithm>

namespace quay::zero {

/// Members that a step took out of the sequence, or memory reserved for them.
struct SequenceCore::Kept : StepContent {
    Members members;
};

// --- Content and its record -----------------------------------------------------------------------------------------

void SequenceCore::put(std::size_t position, ModelElement const& e) {
    // The handle may be a member of this sequence, so it is copied before the members move.
    ModelElement member = e;
    if (members_.size() == members_.capacity()) members_.reserve(std::max<std::size_t>(4, members_.size() * 2));
    if (recording()) recordInsertion(position);
    noteContent();
    if (position == members_.size()) {
        members_.push_back(std::move(member));
    } else {
        members_.insert(members_.begin() + static_cast<std::ptrdiff_t>(position), std::move(member));
    }
}

void SequenceCore::take(std::size_t position) {
    if (recording()) {
        reserveStep();
        record(RunStep{this, false, position, 1, members_[position], nullptr});
    }
    members_.erase(members_.begin() + static_cast<std::ptrdiff_t>(position));
}

void SequenceCore::swapContent(Members content) {
    if (recording()) {
        auto kept = std::make_unique<Kept>();
        reserveStep();
        kept->members.swap(members_);
        record(ContentStep{this, std::move(kept)});
    }
    members_.swap(content);
    if (!members_.empty()) noteContent();
}

void SequenceCore::exchangeRun(RunStep& step) noexcept {
    auto const from = members_.begin() + static_cast<std::ptrdiff_t>(step.position);
    auto* const several = step.count == 1 ? nullptr : static_cast<Kept*>(step.content.get());
    if (step.isIn) {
        auto const to = from + static_cast<std::ptrdiff_t>(step.count);
        if (step.count == 1) step.member = std::move(*from);
        if (several != nullptr) several->members.assign(std::make_move_iterator(from), std::make_move_iterator(to));
        members_.erase(from, to);
    } else if (several == nullptr) {
        members_.insert(from, std::move(step.member));
    } else {
        members_.insert(from, std::make_move_iterator(several->members.begin()),
                        std::make_move_iterator(several->members.end()));
        several->members.clear();
    }
    step.isIn = !step.isIn;
}

void SequenceCore::exchangeMember(MemberStep& step) noexcept { std::swap(members_[step.position], step.member); }

void SequenceCore::exchangeContent(ContentStep& step) noexcept {
    members_.swap(static_cast<Kept&>(*step.content).members);
}

void SequenceCore::prepareRun(RunStep& step) {
    if (step.count == 1 || step.content != nullptr) return;
    auto kept = std::make_unique<Kept>();
    kept->members.reserve(step.count);
    step.content = std::move(kept);
}

bool SequenceCore::sameByRule(AbstractOwnedCollection const& old) const {
    Members const& before = static_cast<SequenceCore const&>(old).members_;
    if (before.size() != members_.size() || before.size() > 1) return false;
    return before.empty() || peekResolveProxy(before.front()) == members_.front();
}

// --- Typed operations -----------------------------------------------------------------------------------------------

void SequenceCore::insertElement(std::size_t position, ModelElement const& e) {
    if (!e) return;
    requirePosition(position, members_.size() + 1);
    checkCompatibleModel(e.impl());
    if (hasEachOnce() && containsElement(e)) return;
    ModelElement::Impl* const member = e.impl();
    Operation operation(*this);
    put(position, e);
    contain(member);
    operation.commit();
}

void SequenceCore::addNewElement(ModelElement const& e) {
    ModelElement::Impl* const member = e.impl();
    ModelElement::Impl* const o = owner();
    bool const unbound = o != nullptr && o->isWritable() && e && member->containerImpl() == nullptr &&
                         !member->hasOwned() && &member->model() == &o->model() && journal().inOperation();
    if (!unbound) {  // code of a derived class may have changed it since it was created
        addElement(e);
        return;
    }
    put(members_.size(), e);
    journal().setContainer(*member, o, index());
}

bool SequenceCore::containsElement(ModelElement const& e) const { return e && !e->isProxy() && indexOf(e) != NONE; }

std::size_t SequenceCore::indexOf(ModelElement const& e) const noexcept {
    auto const found = std::find(members_.begin(), members_.end(), e);
    return found == members_.end() ? NONE : static_cast<std::size_t>(found - members_.begin());
}

void SequenceCore::removeElement(ModelElement const& e) {
    std::size_t const position = e.impl() == nullptr ? NONE : indexOf(e);
    if (position != NONE) eraseAt(position);
}

void SequenceCore::eraseAt(std::size_t position) {
    requirePosition(position, members_.size());
    Operation operation(*this);
    ModelElement const gone = members_[position];
    take(position);
    if (indexOf(gone) == NONE) release(gone.impl());
    operation.commit();
}

void SequenceCore::replaceAt(std::size_t position, ModelElement const& e) {
    requirePosition(position, members_.size());
    if (at(position) == e) return;
    if (!e) reportException(quay0::messages::CannotAddNonExistentObject().about(describe()));
    checkCompatibleModel(e.impl());
    if (hasEachOnce() && containsElement(e))
        reportException(quay0::messages::CannotAddSecondObject().about(describe()));
    Operation operation(*this);
    ModelElement const coming = e;
    ModelElement const gone = members_[position];
    if (recording()) {
        reserveStep();
        record(MemberStep{this, position, gone, nullptr});
    }
    members_[position] = coming;
    contain(coming.impl());
    if (indexOf(gone) == NONE) release(gone.impl());
    operation.commit();
}

void SequenceCore::clear() {
    Operation operation(*this);
    modifying();
    if (!members_.empty()) {
        Members const gone = members_;
        swapContent({});
        for (ModelElement const& e : gone) release(e.impl());
    }
    operation.commit();
}

ModelElement const& SequenceCore::at(std::size_t position) const {
    requirePosition(position, members_.size());
    if (members_[position]->isProxy()) {
        resolveSlot(position);
        requirePosition(position, members_.size());
    }
    return members_[position];
}

void SequenceCore::copyContents(AbstractOwnedCollection const& other) {
    Operation operation(*this);
    modifying();
    basicCopyValues(static_cast<SequenceCore const&>(other));
    operation.commit();
}

// --- Operations without checks ---------------------------------------------------------------------------------------

void SequenceCore::basicAdd(ModelElement const& e) { put(members_.size(), e); }

void SequenceCore::basicRemove(ModelElement const& e) {
    for (std::size_t i = members_.size(); i-- > 0;) {
        if (members_[i] == e) take(i);
    }
}

void SequenceCore::basicClear() {
    if (!members_.empty()) swapContent({});
}

void SequenceCore::basicCopyValues(ReferenceCollection const& other) {
    swapContent(static_cast<SequenceCore const&>(other).members_);
}

// --- Proxies: resolving one isn't a change ---------------------------------------------------------------------------

void SequenceCore::resolveSlot(std::size_t position) const {
    ModelElement const proxy = members_[position];
    ModelElement const found = resolveProxy(proxy);
    // The resolver may have changed the sequence.
    bool const stands = position < members_.size() && members_[position] == proxy;
    if (stands && found && !found->isProxy()) putResolved(position, found);
}

void SequenceCore::putResolved(std::size_t position, ModelElement const& e) const {
    if (owner() == nullptr) {
        members_[position] = e;
        return;
    }
    ModelElement const gone = members_[position];
    Resolution resolution(journal());
    const_cast<SequenceCore*>(this)->recordResolution(
        MemberStep{const_cast<SequenceCore*>(this), position, gone, nullptr});
    members_[position] = e;
    owner()->model().proxies().takePlace(*gone.impl(), *e.impl(), *owner(), index());
    resolution.commit();
}

void SequenceCore::resolveAll() {
    for (std::size_t i = 0; i < members_.size(); ++i) {
        if (members_[i]->isProxy()) resolveSlot(i);
    }
}

void SequenceCore::resolveLocal() {
    if (owner() == nullptr) return;
    for (std::size_t i = 0; i < members_.size(); ++i) {
        ModelElement const& e = members_[i];
        if (e->isProxy() && !e->getProxyId().hasOutsidePart(owner()->model().storeName())) resolveSlot(i);
    }
}

std::vector<ModelElement> SequenceCore::getAllValues() const {
    std::vector<ModelElement> result;
    result.reserve(members_.size());
    for (std::size_t i = 0; i < members_.size(); ++i) {
        ModelElement const& e = at(i);
        if (e && !e->isProxy()) result.push_back(e);
    }
    return result;
}

bool SequenceCore::basicContainsProxyTo(ModelElement const& e) {
    if (owner() == nullptr) return false;
    for (std::size_t i = 0; i < members_.size(); ++i) {
        if (!members_[i]->isProxy()) continue;
        ModelElement const found = peekResolveProxy(members_[i]);
        if (found && !found->isProxy() && isMemberClass(found) && found == e) {
            putResolved(i, e);
            return true;
        }
    }
    return false;
}

void SequenceCore::replaceProxy(ModelElement const& e, unsigned long index) {
    requirePosition(index, members_.size());
    requireMemberClass(e);
    putResolved(index, e);
    contain(e.impl());
}

// --- The generic interface ------------------------------------------------------------------------------------------

void SequenceCore::genericAdd(ModelElement const& e) {
    if (!e) return;
    requireMemberClass(e);
    addElement(e);
}

void SequenceCore::genericEnsureAt(ModelElement const& e, unsigned long position) {
    if (!e) return;
    requireMemberClass(e);
    insertElement(std::min<std::size_t>(position, members_.size()), e);
}

void SequenceCore::genericRemove(ModelElement const& e) {
    if (!e) return;
    requireMemberClass(e);
    removeElement(e);
}

bool SequenceCore::genericContains(ModelElement const& e) const { return e && isMemberClass(e) && containsElement(e); }

void SequenceCore::genericInsertAt(ModelElement const& e, unsigned long position) {
    if (!e) return;
    requireMemberClass(e);
    insertElement(position, e);
}

void SequenceCore::genericSetAt(ModelElement const& e, unsigned long position) {
    requirePosition(position, members_.size());
    if (e) requireMemberClass(e);
    replaceAt(position, e);
}

unsigned long SequenceCore::genericIndexOf(ModelElement const& e) const {
    return e && isMemberClass(e) ? indexOf(e) : NONE;
}

}  // namespace quay::zero
