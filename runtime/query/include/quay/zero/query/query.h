// Queries: the live elements of a class that meet a constraint.
//
//   auto hits = find<InportInformation>(model, InportInformation::isNotDerivPort() == true
//                   && InportInformation::hierCondInfos().any(HierCondInfo::hierIdx() > 3u));
#pragma once

#include <quay/zero/model.h>
#include <quay/zero/query/constrainable.h>
#include <quay/zero/typed_handle.h>

#include <bit>
#include <concepts>
#include <utility>
#include <vector>

namespace quay::zero::query {

/// Base of queries, to which vocabularies are attached.
class QUAY_ZERO_API AbstractQuery {
public:
    AbstractQuery(AbstractQuery const&) = delete;
    AbstractQuery& operator=(AbstractQuery const&) = delete;
    virtual ~AbstractQuery();

    Model const& getModel() const noexcept { return model_; }

protected:
    explicit AbstractQuery(Model model) noexcept : model_(std::move(model)) {}

private:
    Model model_;
};

/// What a query asks, whatever the type of handle that it returns.
struct Question {
    Model const& model;
    meta::Class const& cls;     ///< the class asked for
    meta::Class const& result;  ///< the class that every hit has at least
    SearchClassMatchMode mode;
    Condition const* condition;  ///< null: every element of the class
    AbstractQuery const* query;
};

/// Receives the hits block by block.
struct Sink {
    void* target;
    void (*take)(void* target, ModelElement::Impl* const* block, Mask hits);
};

/// Finds the hits in order of creation. Cost: linear in the number of elements of the class, and in the number of
/// elements created since the last query of the model. An empty or dead model has no elements.
QUAY_ZERO_API void answer(Question const& question, Sink const& sink);

/// A handle to an element that is known to be an X.
template <class X>
X asHit(ModelElement::Impl* e) noexcept {
    if constexpr (std::same_as<X, ModelElement>) {
        return X(e);
    } else {
        return X::of(e);
    }
}

/// The hits as handles of X.
template <class X>
std::vector<X> answer(Question const& question) {
    std::vector<X> hits;
    answer(question, {&hits, [](void* target, ModelElement::Impl* const* block, Mask met) {
                          for (; met != 0; met &= met - 1) {
                              static_cast<std::vector<X>*>(target)->push_back(asHit<X>(block[std::countr_zero(met)]));
                          }
                      }});
    return hits;
}

/// The model's elements of class X that meet the constraint, those of an open transaction included. Like a getter, it
/// resolves the proxies in relations unless resolution is held. NoSuchProperty and CannotCastIncompatibleTypes only for
/// a constrainable that was made before its package was declared, or with a property of another class.
template <class X>
std::vector<X> find(Model const& model, Constraint<X> const& constraint,
                    SearchClassMatchMode mode = SearchClassMatchMode::WithSubclasses) {
    return answer<X>({model, X::metaClass(), X::metaClass(), mode, constraint.condition().get(), nullptr});
}

/// All elements of class X.
template <class X>
std::vector<X> find(Model const& model, SearchClassMatchMode mode = SearchClassMatchMode::WithSubclasses) {
    return answer<X>({model, X::metaClass(), X::metaClass(), mode, nullptr, nullptr});
}

/// A query as an object. Its own vocabulary may be that of a subclass of X that is known only at run time.
template <class X>
class Query final : public AbstractQuery {
public:
    using Mode = SearchClassMatchMode;

    explicit Query(Model const& model, Mode mode = Mode::WithSubclasses)
        : AbstractQuery(model), constrainables_(std::pair<AbstractQuery&, Mode const>(*this, mode)) {}
    /// Searches `cls`; of its elements, those that aren't also of class X are no hits.
    Query(Model const& model, meta::Class const& cls, Mode mode)
        : AbstractQuery(model), constrainables_(*this, cls, mode) {}

    /// The vocabulary, on the properties of X. Another query that uses it raises InvalidValue.
    typename X::Constrainables const& constrainables() const noexcept { return constrainables_; }
    /// Narrows the query.
    Query& where(Constraint<X> const& constraint) {
        condition_ = condition_ == nullptr ? constraint.condition() : both(condition_, constraint.condition());
        return *this;
    }
    /// The hits at this moment; see query::find.
    std::vector<X> find() const {
        ModelElement::Constrainables const& asked = constrainables_;
        return answer<X>(
            {getModel(), asked.getMetaClass(), X::metaClass(), asked.getMatchMode(), condition_.get(), this});
    }

private:
    typename X::Constrainables constrainables_;
    Condition::Pointer condition_;
};

}  // namespace quay::zero::query
