#include <quay/zero/element_sequence.h>
#include <quay/zero/element_set.h>
#include <quay/zero/meta/no_such_property.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/query/condition.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

#include <array>
#include <bit>
#include <utility>

namespace quay::zero::query {

namespace {

/// Those of the wanted elements for which f(Element const&) is true.
template <class F>
Mask matchEach(Condition::Element* const* block, Mask wanted, F&& f) {
    Mask met = 0;
    for (Mask left = wanted; left != 0; left &= left - 1) {
        int const i = std::countr_zero(left);
        if (f(*block[i])) met |= Mask{1} << i;
    }
    return met;
}

class Both final : public Condition {
public:
    Both(Pointer first, Pointer second) : first_(std::move(first)), second_(std::move(second)) {}
    void check(Search const& search) const override {
        first_->check(search);
        second_->check(search);
    }
    Mask match(Element* const* block, Mask wanted) const override {
        Mask const met = first_->match(block, wanted);
        return met == 0 ? 0 : second_->match(block, met);
    }

private:
    Pointer first_;
    Pointer second_;
};

class Either final : public Condition {
public:
    Either(Pointer first, Pointer second) : first_(std::move(first)), second_(std::move(second)) {}
    void check(Search const& search) const override {
        first_->check(search);
        second_->check(search);
    }
    Mask match(Element* const* block, Mask wanted) const override {
        Mask const met = first_->match(block, wanted);
        Mask const open = wanted & ~met;
        return open == 0 ? met : met | second_->match(block, open);
    }

private:
    Pointer first_;
    Pointer second_;
};

class Negation final : public Condition {
public:
    explicit Negation(Pointer of) : of_(std::move(of)) {}
    void check(Search const& search) const override { of_->check(search); }
    Mask match(Element* const* block, Mask wanted) const override { return wanted & ~of_->match(block, wanted); }

private:
    Pointer of_;
};

class Related final : public PropertyCondition {
public:
    Related(meta::Property const& property, AbstractQuery const* query, Quantifier quantifier, Pointer inner)
        : PropertyCondition(property, query), inner_(std::move(inner)), quantifier_(quantifier) {}

    void check(Search const& search) const override {
        checkProperty(search);
        if (inner_ != nullptr) inner_->check({meta::Class::cast(property()->getType()), search.query});
    }
    Mask match(Element* const* block, Mask wanted) const override {
        bool const isAll = quantifier_ == Quantifier::All;
        // All members meet the condition if none fails it.
        Mask const found = matchEach(block, wanted, [&](Element const& e) { return hasOne(e, !isAll); });
        return quantifier_ == Quantifier::Any ? found : wanted & ~found;
    }

private:
    /// Whether the element owns a member that meets the condition, or one that doesn't (`meeting` is false).
    bool hasOne(Element const& owner, bool meeting) const {
        auto* const collection = descriptor()->collection(owner);
        if (collection == nullptr) {
            return hasOneAmong(std::array{descriptor()->child(owner)}, meeting);
        }
        if (!owner.model().proxies().any()) {
            if (collection->empty()) return false;
            ValueFlags const flags = property()->getFlags();
            if (flags == ValueFlags::Set) return hasOneAmong(static_cast<SetCore*>(collection)->members(), meeting);
            if (flags == ValueFlags::Sequence) {
                return hasOneAmong(static_cast<SequenceCore*>(collection)->members(), meeting);
            }
        }
        return hasOneAmong(static_cast<ReferenceCollection*>(collection)->getAllValues(), meeting);
    }

    template <class Members>
    bool hasOneAmong(Members const& members, bool meeting) const {
        Element* block[64];
        for (auto next = members.begin(); next != members.end();) {
            unsigned count = 0;
            for (; next != members.end() && count < 64; ++next) {
                if (*next && !(*next)->isProxy()) block[count++] = next->impl();
            }
            Mask const there = firstBits(count);
            Mask const met = inner_ == nullptr || there == 0 ? there : inner_->match(block, there);
            if ((meeting ? met : there & ~met) != 0) return true;
        }
        return false;
    }

    Pointer inner_;
    Quantifier quantifier_;
};

class Holds final : public PropertyCondition {
public:
    Holds(meta::Property const& property, AbstractQuery const* query, ModelElement element)
        : PropertyCondition(property, query), element_(std::move(element)) {}

    void check(Search const& search) const override { checkProperty(search); }
    Mask match(Element* const* block, Mask wanted) const override {
        return matchEach(block, wanted, [&](Element const& e) { return descriptor()->child(e) == element_; });
    }

private:
    ModelElement element_;
};

}  // namespace

Condition::~Condition() = default;

PropertyCondition::PropertyCondition(meta::Property property, AbstractQuery const* query)
    : property_(std::move(property)), descriptor_(property_ ? property_->descriptor() : nullptr), query_(query) {}

void PropertyCondition::checkProperty(Search const& search) const {
    meta::Class const owner = descriptor_ == nullptr ? meta::Class() : meta::Class::cast(property_->getOwningType());
    if (owner.impl() == nullptr || !search.cls->conformsTo(owner)) {
        meta::reportNoSuchProperty(property_, search.cls);
    }
    if (query_ != nullptr && query_ != search.query) {
        reportException(quay0::messages::InvalidValue().about(meta::nameOrNothing(property_)));
    }
}

void PropertyCondition::checkValue(Search const& search, meta::Type const& type, bool optional) const {
    checkProperty(search);
    ValueFlags const flags = optional ? ValueFlags::Optional : ValueFlags::One;
    meta::Type const found = property_->getType();
    if (found != type || property_->getFlags() != flags || descriptor_->kind() != PropertyKind::Value) {
        reportException(quay0::messages::CannotCastIncompatibleTypes(found->getQualifiedName()));
    }
}

Condition::Pointer both(Condition::Pointer first, Condition::Pointer second) {
    return std::make_shared<Both>(std::move(first), std::move(second));
}
Condition::Pointer either(Condition::Pointer first, Condition::Pointer second) {
    return std::make_shared<Either>(std::move(first), std::move(second));
}
Condition::Pointer negation(Condition::Pointer of) { return std::make_shared<Negation>(std::move(of)); }

Condition::Pointer related(meta::Property const& property, AbstractQuery const* query, Quantifier quantifier,
                           Condition::Pointer inner) {
    return std::make_shared<Related>(property, query, quantifier, std::move(inner));
}
Condition::Pointer holds(meta::Property const& property, AbstractQuery const* query, ModelElement element) {
    return std::make_shared<Holds>(property, query, std::move(element));
}

}  // namespace quay::zero::query
