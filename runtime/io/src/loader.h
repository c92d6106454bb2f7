// Elements from JSON, while it is being read: the handler of a streaming parser.
#pragma once

#include <quay/zero/io/io.h>

#include <boost/json/basic_parser.hpp>
#include <boost/uuid/uuid.hpp>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "forms.h"
#include "node.h"

namespace quay::zero::io {

/// Where the values of an element stand that isn't built yet.
struct Postponed {
    std::uint64_t offset = 0;  ///< of what follows the key "values"
    meta::Class type;
};

/// Builds the elements in a model, which has a transaction open. An element is made as soon as its class and id are
/// known, filled as its values come, and put into its owner when it is complete, so that a map finds its key. Refused,
/// or a failure of the runtime, comes out of any operation; `place` then tells where.
class Loader {
public:
    using error_code = boost::json::error_code;
    using string_view = boost::json::string_view;

    static constexpr std::size_t max_object_size = std::size_t(-1);
    static constexpr std::size_t max_array_size = std::size_t(-1);
    static constexpr std::size_t max_key_size = std::size_t(-1);
    static constexpr std::size_t max_string_size = std::size_t(-1);

    Loader(Model const& model, Limits const& limits) : model_(model), limits_(limits) {}

    std::vector<ModelElement> takeRoots() noexcept { return std::move(roots_); }
    std::size_t elementCount() const noexcept { return elements_; }
    /// Makes what the roots own proxies of that store, and tells `keep` where their values stand. What can't be
    /// postponed, since its place isn't known, is built.
    using Keep = std::function<void(boost::uuids::uuid const&, Postponed)>;
    void postponeChildren(std::u16string store, Keep keep) {
        store_ = std::move(store);
        keep_ = std::move(keep);
    }
    /// The next piece that the parser is given, and where in the text it begins.
    void beginPiece(std::string_view piece, std::uint64_t offset) noexcept {
        piece_ = piece;
        pieceOffset_ = offset;
    }
    /// What is to be read is the values of that element, which becomes a root; `finishPostponed` ends it. `before` is
    /// how many elements count as read already.
    void beginPostponed(meta::Class const& type, boost::uuids::uuid const& id, std::size_t before);
    void finishPostponed();
    /// A JSON pointer to what is being read.
    std::string place() const;

    // What the parser calls.
    bool on_document_begin(error_code&) { return true; }
    bool on_document_end(error_code&) { return true; }
    bool on_object_begin(error_code&) { return beginObject(), true; }
    bool on_object_end(std::size_t, error_code&) { return endObject(), true; }
    bool on_array_begin(error_code&) { return beginList(), true; }
    bool on_array_end(std::size_t, error_code&) { return endList(), true; }
    bool on_key_part(string_view part, std::size_t, error_code&) { return gather(part); }
    bool on_key(string_view part, std::size_t, error_code&) {
        noteEnd(part);
        return key(whole(part)), true;
    }
    bool on_string_part(string_view part, std::size_t, error_code&) { return gather(part); }
    bool on_string(string_view part, std::size_t, error_code&) { return scalar(Node::Kind::Text, whole(part)); }
    bool on_number_part(string_view part, error_code&) { return gather(part); }
    bool on_int64(std::int64_t, string_view part, error_code&) { return scalar(Node::Kind::Number, whole(part)); }
    bool on_uint64(std::uint64_t, string_view part, error_code&) { return scalar(Node::Kind::Number, whole(part)); }
    bool on_double(double, string_view part, error_code&) { return scalar(Node::Kind::Number, whole(part)); }
    bool on_bool(bool truth, error_code&) {
        scalar_.truth = truth;
        return scalar(Node::Kind::Boolean, {});
    }
    bool on_null(error_code&) { return scalar(Node::Kind::Null, {}); }
    bool on_comment_part(string_view, error_code&) { return true; }
    bool on_comment(string_view, error_code&) { return true; }

private:
    enum class State : std::uint8_t { Document, Roots, Element, Values, Children };
    enum class Key : std::uint8_t { None, Roots, Schema, Version, Class, Id, Ref, Values };

    /// An object or list that is open.
    struct Frame {
        State state = State::Document;
        Key key = Key::None;                    // Document, Element: the last one
        unsigned given = 0;                     // the same: which ones there were
        std::size_t count = 0;                  // Roots, Children: elements so far; Values: where `seen_` begins
        ClassForm const* form = nullptr;        // Element, Values
        FieldForm const* property = nullptr;    // Values: the last one; Children
        ModelElement::Impl* element = nullptr;  // Element, Values: once it is made
        bool isPostponed = false;               // Element
        boost::uuids::uuid id{};                // Element
    };

    bool gather(string_view part);
    void noteEnd(string_view part) noexcept;
    bool isSkipping() const noexcept { return skipped_ > 0; }
    bool mayPostpone() const noexcept;
    std::string_view whole(string_view part);
    bool scalar(Node::Kind kind, std::string_view text);
    void beginObject();
    void endObject();
    void beginList();
    void endList();
    void key(std::string_view name);

    void structureKey(Frame& frame, std::string_view name);
    void propertyKey(Frame& frame, std::string_view name);
    void takeScalar();
    void takeClass(Frame& frame);
    void takeId(Frame& frame);
    void takeVersion();
    void takeSchema();
    void beginElement();
    void requireIdentity(Frame const& frame) const;
    void make(Frame& frame);
    void finishElement();
    ModelElement finishReference(Frame const& frame);
    void checkReferences();
    void finishDocument();
    FieldForm const* owningProperty() const noexcept;
    Frame const& owningFrame() const noexcept;

    bool isCollecting() const noexcept { return !open_.empty(); }
    void beginNode(Node::Kind kind);
    void endNode();
    Node& addNode();

    Model model_;
    Limits limits_;
    Forms forms_;
    /// What stands for an element whose place is elsewhere, and its own place in the text.
    struct Reference {
        ModelElement proxy;
        std::string place;
    };

    std::vector<ModelElement> roots_;
    std::vector<Reference> references_;
    std::string begin_;      // where places count from, other than the document
    std::string refusedAt_;  // if that isn't where reading has come to
    std::size_t elements_ = 0;
    std::string schema_;

    std::u16string store_;
    Keep keep_;  // empty unless children are postponed
    std::string_view piece_;
    std::uint64_t pieceOffset_ = 0;
    std::uint64_t keyEnd_ = 0;  // where the last key ends; 0 if that isn't known
    std::size_t skipped_ = 0;   // objects and lists that are open and only passed over

    std::vector<Frame> frames_;
    std::vector<FieldForm const*> seen_;  // the properties that each open element was given
    std::string parts_;                   // of a token that lies across two pieces of the text
    Node scalar_;
    Node compound_;            // the value that is being collected
    std::vector<Node*> open_;  // in it, outermost first; a node's items don't move while one of them is open
};

}  // namespace quay::zero::io
