// What went wrong, as a value: which message of which catalogue, its arguments, and what it is about.
#pragma once

#include <keel/export.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace keel {

/// One message. Programs distinguish messages by catalogue and id and read the arguments; people read the sentence. The
/// subject and the value are only for people and so aren't arguments: a failure has the same arguments whether or not
/// the code that reports it knows them.
class QUAY_ZERO_API Message {
public:
    /// `catalogue` and `id` are kept by reference: pass texts that live as long as the process, such as
    /// literals.
    Message(std::string_view catalogue, std::string_view id, std::vector<std::u16string> arguments = {});

    std::string_view catalogue() const noexcept { return catalogue_; }
    std::string_view id() const noexcept { return id_; }
    std::vector<std::u16string> const& arguments() const noexcept { return arguments_; }

    /// What the message is about, such as "VarTsUIDEntry.varTsIdx", and the value that was refused, if known.
    std::optional<std::u16string> const& subject() const noexcept { return subject_; }
    std::optional<std::u16string> const& value() const noexcept { return value_; }

    Message& about(std::u16string subject);
    Message& withValue(std::u16string value);

    /// Catalogue and id with a colon between them: "quay0:messages:NoSuchType".
    std::string identifier() const;

    /// The readable sentence from the catalogue, as UTF-8.
    std::string sentence() const;

private:
    std::string_view catalogue_;
    std::string_view id_;
    std::vector<std::u16string> arguments_;
    std::optional<std::u16string> subject_;
    std::optional<std::u16string> value_;
};

/// Base of a message class `M`. It lets `M().about(...)` remain an `M`, so that what is thrown keeps its
/// type.
template <class M>
class MessageOf : public Message {
public:
    M& about(std::u16string subject) {
        Message::about(std::move(subject));
        return static_cast<M&>(*this);
    }
    M& withValue(std::u16string value) {
        Message::withValue(std::move(value));
        return static_cast<M&>(*this);
    }

protected:
    using Message::Message;
};

}  // namespace keel
