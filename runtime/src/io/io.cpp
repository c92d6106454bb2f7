#include <keel/exception.h>
#include <quay/zero/io/io.h>

#include <boost/json/basic_parser_impl.hpp>
#include <stdexcept>

#include "failures.h"
#include "files.h"
#include "forms.h"
#include "loader.h"
#include "values.h"
#include "writer.h"

namespace quay::zero::io {

namespace {

constexpr std::size_t kPiece = std::size_t{1} << 18;

/// Reads one text, piece by piece, into a model.
class Reading {
public:
    Reading(Model const& model, std::string name, Limits const& limits)
        : name_(std::move(name)), limits_(limits), parser_(options(limits), model, limits) {}

    void feed(std::string_view piece) {
        if (piece.size() > limits_.size - read_) {
            refuse(limits_.size,
                   "the text is longer than the " + std::to_string(limits_.size) + " bytes that are allowed");
        }
        std::size_t used = 0;
        if (!parser_.done()) used = parse(true, piece);
        std::size_t const rest = piece.find_first_not_of(" \t\r\n", used);
        if (rest != std::string_view::npos) refuse(read_ + rest, "there is more after the end of the text");
        read_ += piece.size();
    }
    std::vector<ModelElement> finish() {
        if (!parser_.done()) parse(false, {});
        return parser_.handler().takeRoots();
    }

private:
    static boost::json::parse_options options(Limits const& limits) {
        boost::json::parse_options result;
        result.max_depth = limits.depth;
        return result;
    }

    [[noreturn]] void refuse(std::uint64_t offset, std::string const& reason) const {
        reportLoad(name_, "byte " + std::to_string(offset), reason);
    }
    [[noreturn]] void refuse(std::string const& reason) { reportLoad(name_, parser_.handler().place(), reason); }

    std::size_t parse(bool more, std::string_view piece) {
        boost::json::error_code error;
        std::size_t used = 0;
        try {
            used = parser_.write_some(more, piece.data(), piece.size(), error);
        } catch (Refused const& refused) {
            refuse(refused.what());
        } catch (keel::core::except::Error const& failure) {
            refuse(failure.GetBaseMsgIDObj().sentence());
        } catch (std::logic_error const& failure) {  // what the arrays throw
            refuse(failure.what());
        }
        if (error) refuse(read_ + used, reasonOf(error));
        return used;
    }

    std::string reasonOf(boost::json::error_code const& error) const {
        if (error == boost::json::error::incomplete) return "the text ends too early";
        if (error == boost::json::error::too_deep) {
            return "there are more than the " + std::to_string(limits_.depth) + " levels that are allowed";
        }
        return "this isn't JSON: " + error.message();
    }

    std::string name_;
    Limits limits_;
    std::uint64_t read_ = 0;
    boost::json::basic_parser<Loader> parser_;
};

}  // namespace

std::string toText(Model const& model) { return Writer(model).write(); }

std::string toText(ModelElement const& element) { return Writer(element->getModel()).write(element); }

std::string propertyText(ModelElement const& element, meta::Property const& property) {
    FieldForm const form = formOf(property);
    std::string out;
    try {
        appendProperty(out, form, element->getPropertyValue(property, ReflectionPrivateTag::PUBLIC_ACCESS));
    } catch (Refused const& refused) {
        reportSave(form.name, refused.what());
    }
    return out;
}

void save(Model const& model, std::filesystem::path const& path) {
    TargetFile file(path);
    Writer writer(model, [&](std::string& text) {
        file.write(text);
        text.clear();
    });
    file.write(writer.write());
    file.commit();
}

void writeFile(std::filesystem::path const& path, std::string_view text) {
    TargetFile file(path);
    file.write(text);
    file.commit();
}

Model fromText(std::string_view text, Limits const& limits) {
    Model model = Model::create();
    fromTextInto(model, text, limits);
    return model;
}

Model load(std::filesystem::path const& path, Limits const& limits) {
    Model model = Model::create();
    loadInto(model, path, limits);
    return model;
}

std::vector<ModelElement> fromTextInto(Model const& model, std::string_view text, Limits const& limits) {
    Transaction transaction = model->beginTransaction(false);
    Reading reading(model, "text", limits);
    reading.feed(text);
    std::vector<ModelElement> roots = reading.finish();
    transaction.commit(boost::none);
    return roots;
}

std::vector<ModelElement> loadInto(Model const& model, std::filesystem::path const& path, Limits const& limits) {
    SourceFile file(path);
    Transaction transaction = model->beginTransaction(false);
    Reading reading(model, file.name(), limits);
    std::vector<char> piece(kPiece);
    for (std::size_t count = piece.size(); count == piece.size();) {
        count = file.read(piece);
        reading.feed({piece.data(), count});
    }
    std::vector<ModelElement> roots = reading.finish();
    transaction.commit(boost::none);
    return roots;
}

}  // namespace quay::zero::io
