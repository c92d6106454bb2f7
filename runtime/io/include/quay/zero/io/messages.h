// How saving and loading fail.
#pragma once

#include <quay0/messages.h>

#include <string>
#include <utility>

namespace quay0::messages {

// Each says in one line where and why. A place is a JSON pointer into the text ("/roots/0/values/inports/3"), or a byte
// count where the text isn't JSON.

/// A text isn't that of a model: the file, the place in it, and the reason.
struct CannotLoad : RuntimeMessage<CannotLoad> {
    CannotLoad(std::u16string file, std::u16string place, std::u16string reason)
        : RuntimeMessage("CannotLoad", {std::move(file), std::move(place), std::move(reason)}) {}
};

/// A model holds something that has no text: the place in the text, and the reason.
struct CannotSave : RuntimeMessage<CannotSave> {
    CannotSave(std::u16string place, std::u16string reason)
        : RuntimeMessage("CannotSave", {std::move(place), std::move(reason)}) {}
};

/// A file can't be read.
struct CannotReadFile : RuntimeMessage<CannotReadFile> {
    CannotReadFile(std::u16string file, std::u16string reason)
        : RuntimeMessage("CannotReadFile", {std::move(file), std::move(reason)}) {}
};

/// A file can't be written.
struct CannotWriteFile : RuntimeMessage<CannotWriteFile> {
    CannotWriteFile(std::u16string file, std::u16string reason)
        : RuntimeMessage("CannotWriteFile", {std::move(file), std::move(reason)}) {}
};

}  // namespace quay0::messages
