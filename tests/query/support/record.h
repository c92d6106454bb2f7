// A record to query, and plain loops to compare with.
#pragma once

#include <ModelRefInfoRepo/ModelRefInfoRepo.h>

#include <functional>
#include <vector>

namespace queries {

using namespace ModelRefInfoRepo;
namespace qz = quay::zero;
using Mode = qz::query::SearchClassMatchMode;

/// A root with ports of both kinds and other children, in which each value that a test asks for occurs, and other
/// values too.
ModelRefInfoRoot build(qz::Model const& model);

/// The live elements of class X that a plain loop finds.
template <class X, class F>
std::vector<X> filter(qz::Model const& model, Mode mode, F&& f) {
    std::vector<X> found;
    for (qz::ModelElement const& e : model->getElements()) {
        X const x = X::cast(e);
        if (x && (mode == Mode::WithSubclasses || e->getMetaClass() == X::metaClass()) && f(x)) found.push_back(x);
    }
    return found;
}
template <class X, class F>
std::vector<X> filter(qz::Model const& model, F&& f) {
    return filter<X>(model, Mode::WithSubclasses, f);
}

/// A constraint on X, and a function that tests the same.
template <class X>
struct Asked {
    qz::query::Constraint<X> constraint;
    std::function<bool(X const&)> plain;
};

/// A comparison with a value, by one of six operators.
template <class X, class Word, class Get, class V>
Asked<X> compared(int way, Word const& word, Get get, V const& v) {
    switch (way) {
        case 0:
            return {word == v, [=](X const& x) { return get(x) == v; }};
        case 1:
            return {word != v, [=](X const& x) { return get(x) != v; }};
        case 2:
            return {word < v, [=](X const& x) { return get(x) < v; }};
        case 3:
            return {word <= v, [=](X const& x) { return get(x) <= v; }};
        case 4:
            return {word > v, [=](X const& x) { return get(x) > v; }};
        default:
            return {word >= v, [=](X const& x) { return get(x) >= v; }};
    }
}

}  // namespace queries
