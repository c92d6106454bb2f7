// Models as text: saving and loading whatever elements a model has, by reflection alone.
//
// The text is canonical JSON, so that the same content gives the same bytes:
//
//   {"roots":[{"class":"ModelRefInfoRepo.ModelRefInfoRoot","id":"0f...","values":{...}}],"schema":URI,"version":1}
//
// Keys are sorted, roots and the members of sets ordered by id, and properties left out that have the value of a fresh
// element. Children stand where they are owned, in the same form as roots. Where a proxy was resolved to an element
// that is owned elsewhere, {"class": C, "ref": ID} stands for it, which is read as a proxy again. What JSON can't hold
// stands in an object with one key that begins with a dollar sign: {"$real": "Infinity"}, {"$utf16": "d800"},
// {"$bytes": "ff"}, {"$array": {...}}.
#pragma once

#include <quay/zero/model.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quay::zero::io {

/// What a text may take at most; a text that takes more is refused. The defaults hold everything that a model of
/// millions of elements needs and nothing that could exhaust the stack.
struct Limits {
    std::uint64_t size = std::uint64_t{4} << 30;  ///< bytes
    std::size_t depth = 1'000;                    ///< JSON objects and arrays inside one another
    std::size_t count = 20'000'000;               ///< elements
};

/// The text of all elements. CannotSave if one holds what has no text: an array of native objects, or an unknown
/// number of values. Proxies that can be resolved are. Costs about as much time as parsing the text.
QUAY_ZERO_API std::string toText(Model const& model);

/// The text of one element and what it owns, as it stands in the text of all.
QUAY_ZERO_API std::string toText(ModelElement const& element);

/// The text of one property of an element, which owns no elements: what stands behind its name in the text of all.
QUAY_ZERO_API std::string propertyText(ModelElement const& element, meta::Property const& property);

/// Writes that text to a file, beside it at first and then in its place: whoever reads the file meets the old text or
/// the whole new one. CannotWriteFile; the file is then as it was.
QUAY_ZERO_API void save(Model const& model, std::filesystem::path const& path);

/// Writes any text to a file in that way.
QUAY_ZERO_API void writeFile(std::filesystem::path const& path, std::string_view text);

/// A new model with the elements that a text tells. CannotLoad for whatever isn't such a text.
QUAY_ZERO_API Model fromText(std::string_view text, Limits const& limits = {});

/// How much of a file is built at once.
enum class Loading {
    Whole,
    /// Roots, their values, and members of multimaps, whose order only they know. What else roots own are proxies of
    /// the store that the file's path names; the model's resolver, which belongs to the file from then on, reads each
    /// when it is reached. The whole text is looked through all the same, but only its form is checked: a child's
    /// values can still be refused when it is reached, with CannotLoad, and so is one of a file that was written to in
    /// between. Outside a transaction, reading a child ends what could be undone.
    Lazy
};

/// The same from a file, which is read in pieces. CannotReadFile, CannotLoad.
QUAY_ZERO_API Model load(std::filesystem::path const& path, Limits const& limits = {},
                         Loading loading = Loading::Whole);

/// Adds the elements of a text or a file to a model, in one transaction, and gives the roots among them. What fails
/// leaves the model as it was; an id that the model has is such a failure.
QUAY_ZERO_API std::vector<ModelElement> fromTextInto(Model const& model, std::string_view text,
                                                     Limits const& limits = {});
QUAY_ZERO_API std::vector<ModelElement> loadInto(Model const& model, std::filesystem::path const& path,
                                                 Limits const& limits = {});

}  // namespace quay::zero::io
