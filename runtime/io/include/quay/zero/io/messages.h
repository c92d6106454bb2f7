// The messages of failures to save and to load.
#pragma once

#include <quay0/messages.h>

#include <string>
#include <utility>

namespace quay0::messages {

// The place of a failure is a JSON pointer into the text ("/roots/0/values/inports/3"), or an offset in bytes where the
// text isn't JSON. The reason fits on one line.

/// A text isn't the text of a model.
struct CannotLoad : RuntimeMessage<CannotLoad> {
    CannotLoad(std::u16string file, std::u16string place, std::u16string reason)
        : RuntimeMessage("CannotLoad", {std::move(file), std::move(place), std::move(reason)}) {}
};

/// A model holds something that has no text.
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
