#include <keel/exception.h>

namespace keel::core::except {

Error::~Error() = default;

std::string Error::describe(Message const& message) {
    std::string text = message.identifier();
    std::string const sentence = message.sentence();
    if (!sentence.empty()) {
        text += ": ";
        text += sentence;
    }
    return text;
}

char const* bad_alloc::what() const noexcept { return "keel:core:OutOfMemory: there is not enough memory"; }

}  // namespace keel::core::except
