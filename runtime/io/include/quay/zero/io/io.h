// Models as text: saving and loading whatever elements a model has, by reflection alone.
//
// The text is canonical JSON, so that the same content gives the same bytes:
//
//   {"roots":[{"class":"ModelRefInfoRepo.ModelRefInfoRoot","id":"0f...","values":{...}}],"schema":URI,"version":1}
//
// Keys are sorted, and roots and the members of sets are ordered by id. A property that has the value of a new element
// is left out. An element has the same form as a root where it is contained; where it is only referred to, it is
// {"class": C, "ref": ID}, which is read as a proxy. What JSON can't hold is an object with one key that begins with a
// dollar sign: {"$real": "Infinity"}, {"$utf16": "d800"}, {"$bytes": "ff"}, {"$array": {...}}.
#pragma once

#include <quay/zero/io/limits.h>
#include <quay/zero/model.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quay::zero::io {

/// The text of all elements. Proxies that can be resolved are resolved. CannotSave if an element holds what has no
/// text, such as an array of native objects. Costs about as much time as parsing the text.
QUAY_ZERO_API std::string toText(Model const& model);

/// The text of one element and of what it owns, as it is in the text of all elements.
QUAY_ZERO_API std::string toText(ModelElement const& element);

/// The text of one property of an element, as it is behind the property's name in the text of all elements. The
/// property must not own elements.
QUAY_ZERO_API std::string propertyText(ModelElement const& element, meta::Property const& property);

/// Writes the text of all elements to a file. The file is replaced as a whole, so that a reader finds either the old
/// text or the new one. CannotWriteFile if that fails; the file is then as it was.
QUAY_ZERO_API void save(Model const& model, std::filesystem::path const& path);

/// Writes any text to a file, which is replaced as a whole.
QUAY_ZERO_API void writeFile(std::filesystem::path const& path, std::string_view text);

/// Creates a new model with the elements of a text. CannotLoad if the text isn't that of a model.
QUAY_ZERO_API Model fromText(std::string_view text, Limits const& limits = {});

/// How much of a file is built at once.
enum class Loading {
    Whole,
    /// Builds the roots with their values, and the members of multimaps, whose order a proxy wouldn't keep. The other
    /// elements that roots own become proxies of the store that the file's path names. The model's resolver, which is
    /// set, reads an element with all that it owns when it is reached. Until then only the form of its JSON is checked.
    /// Reaching it can fail with CannotLoad: if its values are wrong, or if the file was written to since it was
    /// opened. Outside a transaction, reading an element clears the undo history.
    Lazy
};

/// Creates a new model with the elements of a file. Raises CannotReadFile or CannotLoad.
QUAY_ZERO_API Model load(std::filesystem::path const& path, Limits const& limits = {},
                         Loading loading = Loading::Whole);

/// Adds the elements of a text or a file to a model, in one transaction, and returns the roots among them. If that
/// fails, for example since the model has an element of the same id, the model is left as it was.
QUAY_ZERO_API std::vector<ModelElement> fromTextInto(Model const& model, std::string_view text,
                                                     Limits const& limits = {});
QUAY_ZERO_API std::vector<ModelElement> loadInto(Model const& model, std::filesystem::path const& path,
                                                 Limits const& limits = {});

}  // namespace quay::zero::io
