#include <keel/catalogue.h>
#include <keel/message.h>

namespace keel {

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

std::string Message::sentence() const { return Catalogue::instance().sentence(*this); }

}  // namespace keel
