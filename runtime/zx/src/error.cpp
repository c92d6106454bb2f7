#include <zx/error.h>

#include <utility>

void zxRaiseErrorById(std::string_view catalogue, std::string_view key, std::vector<std::u16string> arguments) {
    throw keel::core::except::Exception<zx::ErrorById>(zx::ErrorById(catalogue, key, std::move(arguments)));
}
