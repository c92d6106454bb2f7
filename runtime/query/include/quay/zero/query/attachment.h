// Attachments of constrainables: to a class, or to the vocabulary of one query.
#pragma once

#include <quay/zero/meta/handles.h>
#include <quay/zero/query/forward.h>

namespace quay::zero {

/// Base of vocabularies. The vocabulary of a query has a constrainable for each property of a class that can be
/// constrained.
class QUAY_ZERO_API ModelElement::Constrainables {
public:
    using Attachment = query::InstanceAttachment;
    template <class T>
    using Constrainable = query::ConstrainableWithAttachment<T, query::InstanceAttachment, false, void>;
    template <class T>
    using OptionalConstrainable = query::ConstrainableWithAttachment<T, query::InstanceAttachment, true, void>;
    template <class Y>
    using ConstrainableRelation = query::ConstrainableRelationWithAttachment<Y, query::InstanceAttachment>;

    /// `cls` may be any class; the query checks it.
    Constrainables(query::AbstractQuery& query, meta::Class const& cls, query::SearchClassMatchMode mode)
        : query_(query), cls_(cls), mode_(mode) {}
    Constrainables(Constrainables const&) = delete;
    Constrainables& operator=(Constrainables const&) = delete;

    query::AbstractQuery& getQuery() const noexcept { return query_; }
    meta::Class const& getMetaClass() const noexcept { return cls_; }
    query::SearchClassMatchMode getMatchMode() const noexcept { return mode_; }

protected:
    ~Constrainables() = default;

private:
    query::AbstractQuery& query_;
    meta::Class cls_;
    query::SearchClassMatchMode mode_;
};

namespace query {

/// Attaches a constrainable to the vocabulary of one query.
class InstanceAttachment {
public:
    /// The class on which its constraints are. The class that the query searches is known, and checked, only at run
    /// time.
    using Subject = ModelElement;

    explicit InstanceAttachment(ModelElement::Constrainables& constrainables) noexcept
        : constrainables_(&constrainables) {}

    ModelElement::Constrainables& getConstrainables() const noexcept { return *constrainables_; }
    AbstractQuery const* getQuery() const noexcept { return &constrainables_->getQuery(); }

private:
    ModelElement::Constrainables* constrainables_;
};

/// Attaches a constrainable to the class X, for use without a query object.
template <class X>
class MetaclassAttachment {
public:
    using Subject = X;

    AbstractQuery const* getQuery() const noexcept { return nullptr; }
};

}  // namespace query
}  // namespace quay::zero
