// Parses a text piece by piece and builds its elements.
#pragma once

#include <quay/zero/io/limits.h>
#include <quay/zero/model.h>

#include <boost/json/basic_parser.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "parser_handler.h"

namespace quay::zero::io {

class SourceFile;

/// Loads one text into a model. Anything wrong with the text is reported as CannotLoad, with its place.
class Reading {
public:
    /// How many bytes of a file are read at once.
    static constexpr std::size_t kPiece = std::size_t{1} << 18;

    /// `name` stands for the text in messages.
    Reading(Model const& model, std::string name, Limits const& limits);

    Loader& loader() noexcept { return parser_.handler().loader(); }

    void feed(std::string_view piece);
    void feed(SourceFile& file);
    /// Ends the text and returns its roots.
    std::vector<ModelElement> finish();

    /// Feeds a piece of a text that begins inside of a value and goes on after it. Returns whether the value is
    /// complete; the rest of the piece is then left.
    bool feedValue(std::string_view piece);

private:
    [[noreturn]] void refuse(std::uint64_t offset, std::string const& reason) const;
    [[noreturn]] void refuse(std::string const& reason) const;
    std::size_t parse(bool more, std::string_view piece);
    std::string reasonOf(boost::json::error_code const& error) const;

    std::string name_;
    Limits limits_;
    std::uint64_t read_ = 0;  // bytes of the pieces so far
    boost::json::basic_parser<ParserHandler> parser_;
};

}  // namespace quay::zero::io
