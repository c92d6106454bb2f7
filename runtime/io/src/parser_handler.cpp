#include "parser_handler.h"

#include <functional>

namespace quay::zero::io {

void ParserHandler::begin(Node::Kind kind) {
    if (postponed_ > 0) {
        ++postponed_;
        return;
    }
    if (value_.isOpen()) return value_.begin(kind);
    switch (kind == Node::Kind::Object ? loader_.beginObject() : loader_.beginList()) {
        case Loader::Part::Structure:
            break;
        case Loader::Part::Value:
            value_.begin(kind);
            break;
        case Loader::Part::Postponed:
            postponed_ = 1;
            break;
    }
}

void ParserHandler::end() {
    if (postponed_ > 0) {
        --postponed_;
    } else if (value_.isOpen()) {
        value_.end();
        if (!value_.isOpen()) loader_.value(value_.take());
    } else {
        loader_.end();
    }
}

void ParserHandler::key(string_view part) {
    std::string_view const name = whole(part);
    if (postponed_ > 0) return;
    if (value_.isOpen()) {
        value_.addKey(name);
    } else {
        loader_.key(name, offsetOfEnd(part));
    }
}

void ParserHandler::scalar(Node::Kind kind, string_view part) {
    std::string_view const text = whole(part);
    if (postponed_ > 0) return;
    scalar_.kind = kind;
    if (text.data() != scalar_.text.data()) scalar_.text.assign(text);
    if (value_.isOpen()) {
        value_.addScalar(scalar_);
    } else {
        loader_.value(scalar_);
    }
}

/// The token that ends with `part`, until the next token comes.
std::string_view ParserHandler::whole(string_view part) {
    if (parts_.empty()) return {part.data(), part.size()};
    gather(part);
    scalar_.text.swap(parts_);
    parts_.clear();
    return scalar_.text;
}

/// The offset in the text of the end of a key whose last part that is. The parser hands over a copy of a key that has
/// escapes or lies across two pieces; its address doesn't tell the offset.
std::optional<std::uint64_t> ParserHandler::offsetOfEnd(string_view part) const noexcept {
    std::less_equal<> const notAfter;
    char const* const end = part.data() + part.size();
    bool const isInPiece =
        !piece_.empty() && notAfter(piece_.data(), part.data()) && notAfter(end, piece_.data() + piece_.size());
    if (!isInPiece) return std::nullopt;
    return pieceOffset_ + static_cast<std::uint64_t>(end - piece_.data()) + 1;
}

}  // namespace quay::zero::io
