// Makes the elements of a text in a model, and checks that references between them lead somewhere.
#pragma once

#include <quay/zero/model.h>

#include <boost/uuid/uuid.hpp>
#include <string>
#include <vector>

#include "forms.h"

namespace quay::zero::io {

/// Creates elements and proxies, and remembers references to check them. Anything wrong with the text throws Refused.
class ElementMaker {
public:
    explicit ElementMaker(Model const& model) : model_(model) {}

    /// Checks that the class isn't abstract, and that the model has no element of that id.
    void requireNew(ClassForm const& form, boost::uuids::uuid const& id) const;
    ModelElement make(ClassForm const& form, boost::uuids::uuid const& id);
    /// A proxy for an element that is read later.
    ModelElement makePostponed(ClassForm const& form, ProxyId const& id);
    /// A proxy for an element that is contained elsewhere in the model. `place` is that of the reference in the text.
    ModelElement makeReference(ClassForm const& form, boost::uuids::uuid const& id, std::string place);
    /// Checks that each reference is to an element that is there and conforms to its class. `place` becomes the place
    /// of a reference that is refused.
    void checkReferences(std::string& place) const;

private:
    struct Reference {
        ModelElement proxy;
        std::string place;
    };

    Model model_;
    std::vector<Reference> references_;
};

}  // namespace quay::zero::io
