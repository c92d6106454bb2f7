#include "reading.h"

#include <keel/exception.h>

#include <boost/json/basic_parser_impl.hpp>
#include <stdexcept>

#include "failures.h"
#include "files.h"

namespace quay::zero::io {

namespace {

boost::json::parse_options optionsFor(Limits const& limits) {
    boost::json::parse_options result;
    result.max_depth = limits.depth;
    return result;
}

}  // namespace

Reading::Reading(Model const& model, std::string name, Limits const& limits)
    : name_(std::move(name)), limits_(limits), parser_(optionsFor(limits), model, limits) {}

void Reading::feed(std::string_view piece) {
    if (piece.size() > limits_.size - read_) {
        refuse(limits_.size, "the text is longer than the " + std::to_string(limits_.size) + " bytes that are allowed");
    }
    std::size_t used = 0;
    if (!parser_.done()) used = parse(true, piece);
    std::size_t const rest = piece.find_first_not_of(" \t\r\n", used);
    if (rest != std::string_view::npos) refuse(read_ + rest, "there is more after the end of the text");
    read_ += piece.size();
}

void Reading::feed(SourceFile& file) {
    std::vector<char> piece(kPiece);
    for (std::size_t count = piece.size(); count == piece.size();) {
        count = file.read(piece);
        feed({piece.data(), count});
    }
}

std::vector<ModelElement> Reading::finish() {
    if (!parser_.done()) parse(false, {});
    return loader().takeRoots();
}

bool Reading::feedValue(std::string_view piece) {
    parse(true, piece);
    read_ += piece.size();
    return parser_.done();
}

void Reading::refuse(std::uint64_t offset, std::string const& reason) const {
    reportLoad(name_, "byte " + std::to_string(offset), reason);
}

void Reading::refuse(std::string const& reason) const { reportLoad(name_, parser_.handler().loader().place(), reason); }

std::size_t Reading::parse(bool more, std::string_view piece) {
    boost::json::error_code error;
    std::size_t used = 0;
    parser_.handler().beginPiece(piece, read_);
    try {
        used = parser_.write_some(more, piece.data(), piece.size(), error);
    } catch (Refused const& refused) {
        refuse(refused.what());
    } catch (keel::core::except::Error const& failure) {
        refuse(failure.GetBaseMsgIDObj().sentence());
    } catch (std::logic_error const& failure) {  // of the arrays
        refuse(failure.what());
    }
    if (error) refuse(read_ + used, reasonOf(error));
    return used;
}

std::string Reading::reasonOf(boost::json::error_code const& error) const {
    if (error == boost::json::error::incomplete) return "the text ends too early";
    if (error == boost::json::error::too_deep) {
        return "there are more than the " + std::to_string(limits_.depth) + " levels that are allowed";
    }
    return "this isn't JSON: " + error.message();
}

}  // namespace quay::zero::io
