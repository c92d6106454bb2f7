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

/// Base of queries: what a vocabulary of its own is tied to.
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

/// What is asked, without the type of the answer.
struct Question {
    Model const& model;
    meta::Class const& cls;     ///< the class asked for
    meta::Class const& result;  ///< the class that every hit has at least
    SearchClassMatchMode mode;
    Condition const* condition;  ///< null: every element of the class
    AbstractQuery const* query;
};

/// Takes the hits block by block.
struct Sink {
    void* target;
    void (*take)(void* target, ModelElement::Impl* const* block, Mask hits);
};

/// Answers in order of creation. Costs a step for each element of the class, and one more for each element that was
/// created since the last query of the model. An empty or dead model has no elements.
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

/// The answer as handles of X.
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

/// The model's elements of class X that meet the constraint. Elements of an open transaction are among them. It reads
/// as getters do: relations resolve proxies, unless that is held off. NoSuchProperty and CannotCastIncompatibleTypes
/// can only come of a constrainable that was made before its package was up, or with a property of another.
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

/// A query as an object, with a vocabulary of its own, which may be on a subclass of X that is known only at run time.
template <class X>
class Query final : public AbstractQuery {
public:
    using Mode = SearchClassMatchMode;

    explicit Query(Model const& model, Mode mode = Mode::WithSubclasses)
        : AbstractQuery(model), constrainables_(std::pair<AbstractQuery&, Mode const>(*this, mode)) {}
    /// Searches `cls`; of its elements, those that aren't also of class X are no hits.
    Query(Model const& model, meta::Class const& cls, Mode mode)
        : AbstractQuery(model), constrainables_(*this, cls, mode) {}

    /// The properties of X. InvalidValue if another query is asked with them.
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
