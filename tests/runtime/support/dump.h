// A model as text, so that "as it was before" is one comparison.
#pragma once

#include <quay/zero/model.h>
#include <quay/zero/value.h>

#include <boost/uuid/uuid.hpp>
#include <map>
#include <string>

namespace nodes {

/// What ids are called in a dump: "#7" if drawn by idOf, else the name that was given here, else the id itself.
class Names {
public:
    void give(boost::uuids::uuid const& id, std::string name) { names_.insert_or_assign(id, std::move(name)); }
    std::string of(boost::uuids::uuid const& id) const;
    /// Of an element: "-" for an empty handle; a dead element has a cross before its name.
    std::string of(quay::zero::ModelElement::Impl const* element) const;

private:
    std::map<boost::uuids::uuid, std::string> names_;
};

// How plain values are written. What dump writes for a property is made of these alone.
std::string show(bool value);
std::string show(int value);
std::string show(double value);
std::string show(std::u16string const& value);
std::string show(std::string const& value);

/// A property's value, whatever it holds; an empty, untyped value is "nothing".
std::string show(quay::zero::Value const& value, Names const& names = {});

/// One property of an element of the test's own classes, as reflection reads it.
std::string show(quay::zero::ModelElement::Impl const& element, std::size_t index, Names const& names = {});

struct DumpOptions {
    Names const* names = nullptr;
    bool referenceCounts = false;
};

/// Every element in order of creation with id, class, container and property, and values; whether a transaction is
/// open; and the depths of the history. Of elements of the test's own classes and of meta objects.
std::string dump(quay::zero::Model const& model, DumpOptions options = {});

}  // namespace nodes
