// Conditions: what a query requires of an element, as a tree. Callers build it from constraints (constraint.h).
#pragma once

#include <quay/zero/meta/handles.h>
#include <quay/zero/model_element.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace quay::zero::query {

class AbstractQuery;

/// A set of up to 64 elements of a block: bit i stands for the i-th.
using Mask = std::uint64_t;
constexpr Mask firstBits(std::size_t count) noexcept { return count == 64 ? ~Mask{0} : (Mask{1} << count) - 1; }

/// One node of the tree. Conditions never change, and may be shared by queries.
class QUAY_ZERO_API Condition {
public:
    using Element = ModelElement::Impl;
    using Pointer = std::shared_ptr<Condition const>;

    /// The class of the elements that are searched, and the query object, or null if there is none.
    struct Search {
        meta::Class const& cls;
        AbstractQuery const* query;
    };

    Condition() = default;
    Condition(Condition const&) = delete;
    Condition& operator=(Condition const&) = delete;
    virtual ~Condition();

    /// Throws if the condition can't be checked on such elements. Called once before the first `match`.
    virtual void check(Search const& search) const = 0;
    /// Returns those of the wanted elements of a block that meet the condition. Others aren't looked at.
    virtual Mask match(Element* const* block, Mask wanted) const = 0;
};

/// Base of the conditions that look at one property.
class QUAY_ZERO_API PropertyCondition : public Condition {
protected:
    /// `query`: the one whose vocabulary named the property, or null.
    PropertyCondition(meta::Property property, AbstractQuery const* query);

    meta::Property const& property() const noexcept { return property_; }
    PropertyDescriptor const* descriptor() const noexcept { return descriptor_; }

    /// NoSuchProperty unless elements of the searched class have the property; InvalidValue if another query named it.
    void checkProperty(Search const& search) const;
    /// CannotCastIncompatibleTypes unless the property holds one value of that type, or at most one.
    void checkValue(Search const& search, meta::Type const& type, bool optional) const;

private:
    meta::Property property_;
    PropertyDescriptor const* descriptor_;  // null for a property that no class has
    AbstractQuery const* query_;
};

/// Both conditions, either one, or the negation. The second is checked only on elements for which the first doesn't
/// decide.
QUAY_ZERO_API Condition::Pointer both(Condition::Pointer first, Condition::Pointer second);
QUAY_ZERO_API Condition::Pointer either(Condition::Pointer first, Condition::Pointer second);
QUAY_ZERO_API Condition::Pointer negation(Condition::Pointer of);

enum class Quantifier : std::uint8_t { Any, All, None };

/// A condition on the elements that a property owns; without `inner`, whether there are any. Proxies are resolved
/// unless resolution is held; those that can't be resolved are skipped.
QUAY_ZERO_API Condition::Pointer related(meta::Property const& property, AbstractQuery const* query,
                                         Quantifier quantifier, Condition::Pointer inner);
/// Whether the element that a property holds is this one; an empty handle stands for none.
QUAY_ZERO_API Condition::Pointer holds(meta::Property const& property, AbstractQuery const* query,
                                       ModelElement element);

}  // namespace quay::zero::query
