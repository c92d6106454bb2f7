#include <ordo/factory/text.h>

#include <zx/text.h>

namespace ordo::factory {

std::u16string extractString(zxArray const* array) {
    if (!zxIsText(array)) {
        return OrdoValue::borrowedArray(array).toText();  // throws, with a message that says why
    }
    return std::u16string(zx::textOf(array));
}

}  // namespace ordo::factory
