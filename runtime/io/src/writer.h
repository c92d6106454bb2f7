// Writes elements as JSON.
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

/// Writes one text. It is kept in memory unless there is a sink. The sink is called from time to time with what was
/// written, and may take it by clearing it.
class Writer {
public:
    using Sink = std::function<void(std::string&)>;

    explicit Writer(Model const& model, Sink sink = {});

    /// The text of the model, or the rest of it that the sink hasn't taken.
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
    Model fresh_;  // of new elements, whose values are the initial ones
    Sink sink_;
    Forms forms_;
    std::vector<ModelElement> roots_;
    std::vector<ModelElement> unresolved_;  // the proxies that were written, all of this model
    std::string out_;
};

}  // namespace quay::zero::io
