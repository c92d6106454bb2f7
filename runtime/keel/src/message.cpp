#include <keel/catalogue.h>
#include <keel/message.h>
#include <keel/text.h>

#include <algorithm>

namespace keel {
namespace {

/// What a name in braces stands for, or nothing if the message doesn't know it.
std::optional<std::u16string> lookUp(std::string_view name, Message const& message) {
    if (name == "subject") {
        return message.subject();
    }
    if (name == "value") {
        return message.value();
    }
    std::size_t index = 0;
    for (char const digit : name) {
        if (digit < '0' || digit > '9') {
            return std::nullopt;
        }
        index = std::min<std::size_t>(index * 10 + static_cast<std::size_t>(digit - '0'), 1'000);
    }
    if (name.empty() || index >= message.arguments().size()) {
        return std::nullopt;
    }
    return message.arguments()[index];
}

struct Filled {
    std::string text;
    int fields = 0;
    bool namesSubject = false;
    bool namesValue = false;
};

/// Fills in one sentence in a single pass, so that braces in what is filled in stay as they are. Gives
/// nothing if the sentence needs something that the message doesn't know.
std::optional<Filled> fill(std::string_view sentence, Message const& message) {
    Filled filled;
    while (true) {
        std::size_t const open = sentence.find('{');
        std::size_t const close = sentence.find('}', open == std::string_view::npos ? 0 : open);
        if (open == std::string_view::npos || close == std::string_view::npos) {
            filled.text += sentence;
            return filled;
        }
        std::string_view const name = sentence.substr(open + 1, close - open - 1);
        auto const replacement = lookUp(name, message);
        if (!replacement) {
            return std::nullopt;
        }
        filled.text += sentence.substr(0, open);
        filled.text += toUtf8(*replacement);
        ++filled.fields;
        filled.namesSubject = filled.namesSubject || name == "subject";
        filled.namesValue = filled.namesValue || name == "value";
        sentence.remove_prefix(close + 1);
    }
}

Filled joinedArguments(Message const& message) {
    Filled filled;
    for (std::u16string const& argument : message.arguments()) {
        filled.text += filled.text.empty() ? "" : ", ";
        filled.text += toUtf8(argument);
    }
    return filled;
}

}  // namespace

Message::Message(std::string_view catalogue, std::string_view id, std::vector<std::u16string> arguments)
    : catalogue_(catalogue), id_(id), arguments_(std::move(arguments)) {}

Message& Message::about(std::u16string subject) {
    subject_ = std::move(subject);
    return *this;
}

Message& Message::withValue(std::u16string value) {
    value_ = std::move(value);
    return *this;
}

std::string Message::identifier() const {
    std::string result(catalogue_);
    result += ':';
    result += id_;
    return result;
}

std::string Message::sentence() const {
    std::optional<Filled> best;
    for (std::string const& candidate : Catalogue::instance().sentences(identifier())) {
        auto filled = fill(candidate, *this);
        if (filled && (!best || filled->fields > best->fields)) {
            best = std::move(filled);
        }
    }
    if (!best) {
        best = joinedArguments(*this);
    }
    std::string result;
    if (subject_ && !best->namesSubject) {
        result = toUtf8(*subject_);
        result += best->text.empty() ? "" : ": ";
    }
    result += best->text;
    if (value_ && !best->namesValue) {
        result += result.empty() ? "" : " ";
        result += "(the value was " + toUtf8(*value_) + ")";
    }
    return result;
}

}  // namespace keel
