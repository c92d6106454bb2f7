// Builds elements from the objects, lists, keys and values of a text, in the order in which they stand there.
#pragma once

#include <quay/zero/io/limits.h>
#include <quay/zero/model.h>

#include <boost/uuid/uuid.hpp>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "element_maker.h"
#include "forms.h"
#include "frames.h"
#include "node.h"

namespace quay::zero::io {

/// An element whose values are read later.
struct Postponed {
    std::uint64_t offset = 0;  ///< in bytes, of what follows the key "values"
    meta::Class type;
};

/// Builds the elements in a model, which has a transaction open. An element is made as soon as its class and id are
/// known, filled as its values come, and put into its owner when it is complete, so that a map finds its key. Any
/// operation may throw Refused or an exception of the runtime; `place` then tells where.
class Loader {
public:
    /// How an object or a list that begins is handled.
    enum class Part : std::uint8_t {
        Structure,  ///< part of the text's structure: what is inside comes to the loader piece by piece
        Value,      ///< the value of a property, which comes to the loader as a whole
        Postponed   ///< the values of an element that are read later: the loader gets nothing of it
    };
    /// Remembers an element that is postponed. False if one of that id is postponed already.
    using Keep = std::function<bool(boost::uuids::uuid const&, Postponed)>;

    Loader(Model const& model, Limits const& limits) : maker_(model), limits_(limits) {}

    /// From now on, elements that roots own become proxies of that store, each of which is given to `keep`. An element
    /// is built all the same if it can't be postponed.
    void postponeChildren(std::u16string store, Keep keep);
    /// The text to be read is the values of that element alone, which becomes a root in `finishPostponed`. `before` is
    /// the number of elements that count as read already.
    void beginPostponed(meta::Class const& type, boost::uuids::uuid const& id, std::size_t before);
    void finishPostponed();

    Part beginObject();
    Part beginList();
    /// The innermost object or list that is part of the structure is complete.
    void end();
    /// The key of an object, and the offset of its end in the text if that is known.
    void key(std::string_view name, std::optional<std::uint64_t> end);
    /// A scalar, or a whole object or list that is the value of a property.
    void value(Node const& node);

    std::vector<ModelElement> takeRoots() noexcept { return std::move(roots_); }
    std::size_t elementCount() const noexcept { return elements_; }
    /// A JSON pointer to what is being read.
    std::string place() const;

private:
    Part beginObjectIn(DocumentFrame const& document);
    Part beginObjectIn(ElementsFrame& list);
    Part beginObjectIn(ElementFrame& element);
    Part beginObjectIn(ValuesFrame const& values);
    Part beginListIn(DocumentFrame const& document);
    Part beginListIn(ElementsFrame const& list);
    Part beginListIn(ElementFrame const& element);
    Part beginListIn(ValuesFrame const& values);
    void keyIn(ValuesFrame& values, std::string_view name);
    void valueIn(DocumentFrame& document, Node const& node);
    void valueIn(ElementsFrame const& list, Node const& node);
    void valueIn(ElementFrame& element, Node const& node);
    void valueIn(ValuesFrame const& values, Node const& node);
    void finish(DocumentFrame const& document);
    void finish(ElementsFrame const& list);
    void finish(ElementFrame& element);
    void finish(ValuesFrame const& values);

    Part beginElement(Owner const& owner);
    void takeClass(ElementFrame& element, Node const& node);
    bool mayPostpone(ElementFrame const& element) const noexcept;
    void postpone(ElementFrame& element);
    ModelElement makeReference(ElementFrame const& element);

    ElementMaker maker_;
    Limits limits_;
    Forms forms_;
    std::vector<ModelElement> roots_;
    std::size_t elements_ = 0;

    std::u16string store_;
    Keep keep_;                            // empty unless children are postponed
    std::optional<std::uint64_t> keyEnd_;  // of the last key

    std::vector<Frame> frames_;           // of the objects and lists that are open, outermost first
    std::vector<FieldForm const*> seen_;  // the properties given so far of each element whose values are open
    std::string begin_;                   // where places count from, if not from the whole text
    std::string refusedAt_;               // the place of a failure that isn't where reading has come to
};

}  // namespace quay::zero::io
