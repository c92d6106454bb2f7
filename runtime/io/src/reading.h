// Reading a text piece by piece.
#pragma once

#include <quay/zero/io/io.h>

#include <boost/json/basic_parser.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "loader.h"

namespace quay::zero::io {

class SourceFile;

/// One text and the parser that hands it to a loader. CannotLoad, with the place, for whatever the text has wrong.
class Reading {
public:
    static constexpr std::size_t kPiece = std::size_t{1} << 18;

    Reading(Model const& model, std::string name, Limits const& limits);

    Loader& loader() noexcept { return parser_.handler(); }

    void feed(std::string_view piece);
    void feed(SourceFile& file);
    /// The end of the text. Gives the roots.
    std::vector<ModelElement> finish();

    /// For one value in the middle of a text: takes what belongs to it, and answers whether it is complete.
    bool feedValue(std::string_view piece);

private:
    [[noreturn]] void refuse(std::uint64_t offset, std::string const& reason) const;
    [[noreturn]] void refuse(std::string const& reason);
    std::size_t parse(bool more, std::string_view piece);
    std::string reasonOf(boost::json::error_code const& error) const;

    std::string name_;
    Limits limits_;
    std::uint64_t read_ = 0;
    boost::json::basic_parser<Loader> parser_;
};

}  // namespace quay::zero::io
