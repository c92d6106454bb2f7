#include <quay/zero/element_set.h>

namespace quay::zero {

/// A member of a set. `node` holds it while it is out of the set, and is empty otherwise.
struct SetCore::Taken : StepContent {
    ModelElement member;
    Members::node_type node;
};

struct SetCore::Content : StepContent {
    Members members;
    std::unique_ptr<Proxies> proxies;

    void swap(SetCore& with) noexcept {
        members.swap(with.members_);
        proxies.swap(with.proxies_);
    }
};

SetCore::~SetCore() = default;

// --- Content and its record -----------------------------------------------------------------------------------------

void SetCore::put(ModelElement const& e) {
    noteContent();
    if (!recording()) {
        members_.insert(e);
        return;
    }
    auto taken = std::make_unique<Taken>();
    taken->member = e;
    reserveStep();
    members_.insert(e);
    record(EntryStep{this, true, std::move(taken)});
}

void SetCore::take(ModelElement const& e) {
    auto const position = members_.find(e);
    if (!recording()) {
        members_.erase(position);
        return;
    }
    auto taken = std::make_unique<Taken>();
    taken->member = e;
    reserveStep();
    taken->node = members_.extract(position);
    record(EntryStep{this, false, std::move(taken)});
}

void SetCore::swapContent(Content&& content) {
    if (recording()) {
        auto kept = std::make_unique<Content>();
        reserveStep();
        kept->swap(*this);
        record(ContentStep{this, std::move(kept)});
    }
    content.swap(*this);
    if (!holdsNothing()) noteContent();
}

// Inserting a node allocates nothing: the table was large enough when the node was in it, and never shrinks.
void SetCore::exchangeEntry(EntryStep& step) noexcept {
    auto& taken = static_cast<Taken&>(*step.entry);
    if (step.isIn) {
        taken.node = members_.extract(members_.find(taken.member));
    } else {
        members_.insert(std::move(taken.node));
    }
    step.isIn = !step.isIn;
}

void SetCore::exchangeContent(ContentStep& step) noexcept { static_cast<Content&>(*step.content).swap(*this); }

bool SetCore::sameByRule(AbstractOwnedCollection const& old) const {
    Members const& before = static_cast<SetCore const&>(old).members_;
    if (before.size() != members_.size() || before.size() > 1) return false;
    if (!hasSameProxies(static_cast<SetCore const&>(old))) return false;
    return before.empty() || *before.begin() == *members_.begin();
}

// --- Typed operations -----------------------------------------------------------------------------------------------

void SetCore::addElement(ModelElement const& element) {
    if (!element) return;
    ModelElement const e = element;  // `element` may be a member of this set
    checkCompatibleModel(e.impl());
    if (e->isProxy() ? holdsProxy(e) : members_.contains(e)) return;
    Operation operation(*this);
    basicAddWithProxy(e);
    contain(e.impl());
    operation.commit();
}

bool SetCore::containsElement(ModelElement const& e) const { return e && !e->isProxy() && members_.contains(e); }

void SetCore::removeElement(ModelElement const& element) {
    if (element.impl() == nullptr) return;
    ModelElement const e = element;
    if (e->isProxy() ? !holdsProxy(e) : !members_.contains(e)) return;
    Operation operation(*this);
    basicRemove(e);
    release(e.impl());
    operation.commit();
}

void SetCore::clear() {
    Operation operation(*this);
    modifying();
    std::vector<ModelElement> const gone = getAllValuesAndProxies();
    if (!gone.empty()) {
        swapContent(Content());
        for (ModelElement const& e : gone) release(e.impl());
    }
    operation.commit();
}

void SetCore::copyContents(AbstractOwnedCollection const& other) {
    Operation operation(*this);
    modifying();
    basicCopyValues(static_cast<SetCore const&>(other));
    operation.commit();
}

// --- Operations without checks ---------------------------------------------------------------------------------------

void SetCore::basicAdd(ModelElement const& e) {
    if (!members_.contains(e)) put(e);
}

void SetCore::basicAddWithProxy(ModelElement const& e) { e->isProxy() ? basicAddProxy(e) : basicAdd(e); }

void SetCore::basicRemove(ModelElement const& e) {
    if (e->isProxy()) {
        basicRemoveProxy(e);
    } else if (members_.contains(e)) {
        take(e);
    }
}

void SetCore::basicClear() {
    if (!holdsNothing()) swapContent(Content());
}

void SetCore::basicCopyValues(ReferenceCollection const& other) {
    auto const& from = static_cast<SetCore const&>(other);
    Content copy;
    copy.members = from.members_;
    copy.proxies = from.copyOfProxies();
    swapContent(std::move(copy));
}

// --- Proxies --------------------------------------------------------------------------------------------------------

bool SetCore::resolveAdd(ModelElement const& e) {
    auto taken = std::make_unique<Taken>();
    taken->member = e;
    if (!members_.insert(e).second) return false;
    noteContent();
    recordResolution(EntryStep{this, true, std::move(taken)});
    return true;
}

SetCore::Members const& SetCore::resolvedMembers() const {
    const_cast<SetCore*>(this)->resolveUnlessHeld();
    return members_;
}

std::vector<ModelElement> SetCore::getAllValues() const {
    Members const& members = resolvedMembers();
    return {members.begin(), members.end()};
}

// --- The generic interface ------------------------------------------------------------------------------------------

void SetCore::genericAdd(ModelElement const& e) {
    if (!e) return;
    requireMemberClass(e);
    addElement(e);
}

void SetCore::genericRemove(ModelElement const& e) {
    if (!e) return;
    requireMemberClass(e);
    removeElement(e);
}

bool SetCore::genericContains(ModelElement const& e) const { return e && isMemberClass(e) && containsElement(e); }

}  // namespace quay::zero
