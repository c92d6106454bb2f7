// Elements as JSON.
#pragma once

#include <quay/zero/model.h>

#include <functional>
#include <string>
#include <vector>

#include "forms.h"

namespace quay::zero {
class ReferenceCollection;
}

namespace quay::zero::io {

/// Writes a model's text once. Keeps it in memory, unless there is a sink: that is given, and may take, what is there
/// from time to time.
class Writer {
public:
    using Sink = std::function<void(std::string&)>;

    explicit Writer(Model const& model, Sink sink = {});

    /// The text, or the rest of it that the sink hasn't taken.
    std::string write();
    /// The text of one element alone.
    std::string write(ModelElement const& element);

private:
    struct Children {
        std::vector<ModelElement> elements;
        bool isList = false;
    };

    void appendElement(ModelElement const& element);
    void appendChild(ModelElement::Impl& owner, FieldForm const& property, ModelElement const& child, bool again);
    void checkUnresolved();
    [[noreturn]] void reportNotLoaded(ModelElement const& proxy);
    void appendClassAnd(std::string_view key, ClassForm const& form, boost::uuids::uuid const& id);
    void appendValues(ModelElement::Impl& element, ClassForm& form);
    bool appendChildren(ModelElement::Impl& element, FieldForm const& property, bool first);
    static Children childrenOf(ModelElement::Impl& element, FieldForm const& property);
    void prepare(ClassForm& form);
    std::string placeOf(ModelElement::Impl& element);
    void drain();

    Model model_;
    Model fresh_;  // where elements with their initial values are made
    Sink sink_;
    Forms forms_;
    std::vector<ModelElement> roots_;
    std::vector<ModelElement> unresolved_;  // proxies of this model that were written
    std::string out_;
};

}  // namespace quay::zero::io
