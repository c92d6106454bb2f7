// What the streaming JSON parser calls: puts tokens together and hands them to a loader.
#pragma once

#include <boost/json/basic_parser.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "loader.h"
#include "node_builder.h"

namespace quay::zero::io {

/// The handler of a boost::json::basic_parser. Exceptions of the loader pass through the parser.
class ParserHandler {
public:
    using error_code = boost::json::error_code;
    using string_view = boost::json::string_view;

    static constexpr std::size_t max_object_size = std::size_t(-1);
    static constexpr std::size_t max_array_size = std::size_t(-1);
    static constexpr std::size_t max_key_size = std::size_t(-1);
    static constexpr std::size_t max_string_size = std::size_t(-1);

    ParserHandler(Model const& model, Limits const& limits) : loader_(model, limits) {}

    Loader& loader() noexcept { return loader_; }
    Loader const& loader() const noexcept { return loader_; }
    /// The next piece of the text that the parser is given, and the offset of its begin in the text.
    void beginPiece(std::string_view piece, std::uint64_t offset) noexcept {
        piece_ = piece;
        pieceOffset_ = offset;
    }

    bool on_document_begin(error_code&) { return true; }
    bool on_document_end(error_code&) { return true; }
    bool on_object_begin(error_code&) { return begin(Node::Kind::Object), true; }
    bool on_object_end(std::size_t, error_code&) { return end(), true; }
    bool on_array_begin(error_code&) { return begin(Node::Kind::List), true; }
    bool on_array_end(std::size_t, error_code&) { return end(), true; }
    bool on_key_part(string_view part, std::size_t, error_code&) { return gather(part), true; }
    bool on_key(string_view part, std::size_t, error_code&) { return key(part), true; }
    bool on_string_part(string_view part, std::size_t, error_code&) { return gather(part), true; }
    bool on_string(string_view part, std::size_t, error_code&) { return scalar(Node::Kind::Text, part), true; }
    bool on_number_part(string_view part, error_code&) { return gather(part), true; }
    bool on_int64(std::int64_t, string_view part, error_code&) { return scalar(Node::Kind::Number, part), true; }
    bool on_uint64(std::uint64_t, string_view part, error_code&) { return scalar(Node::Kind::Number, part), true; }
    bool on_double(double, string_view part, error_code&) { return scalar(Node::Kind::Number, part), true; }
    bool on_bool(bool truth, error_code&) {
        scalar_.truth = truth;
        return scalar(Node::Kind::Boolean, {}), true;
    }
    bool on_null(error_code&) { return scalar(Node::Kind::Null, {}), true; }
    bool on_comment_part(string_view, error_code&) { return true; }
    bool on_comment(string_view, error_code&) { return true; }

private:
    void begin(Node::Kind kind);
    void end();
    void key(string_view part);
    void scalar(Node::Kind kind, string_view part);
    void gather(string_view part) { parts_.append(part.data(), part.size()); }
    std::string_view whole(string_view part);
    std::optional<std::uint64_t> offsetOfEnd(string_view part) const noexcept;

    Loader loader_;
    NodeBuilder value_;          // open while a value of several parts is read
    std::size_t postponed_ = 0;  // objects and lists that are open and of which the loader gets nothing
    std::string parts_;          // of a token that lies across two pieces of the text
    Node scalar_;                // the last scalar; its text also holds a key that was put together
    std::string_view piece_;
    std::uint64_t pieceOffset_ = 0;
};

}  // namespace quay::zero::io
