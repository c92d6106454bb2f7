#include "elements.h"

#include <zx/objects.h>

#include <stdexcept>

namespace {

constexpr char const* expected = "an array of native objects is wanted";

void checkClassName(std::string_view className) {
    if (className.empty()) {
        throw std::invalid_argument("objects need the name of their class");
    }
}

zx::Array createNatives(std::string_view className, zx::Shape shape, zx::NativeOperations const& operations) {
    checkClassName(className);
    std::size_t const count = shape.count();
    return zx::make<zx::Natives>(std::move(shape), className, operations, count);
}

}  // namespace

zxArray* zxCreateObjectFromUnderlying(std::string_view className, zxArray* underlying) {
    checkClassName(className);
    zx::contentOf<zx::Plain>(underlying, "an object array can be based on numbers, logicals and chars only");
    zx::Array objects = zx::make<zx::Based>(underlying->shape, std::string(className));
    zx::put(*objects, std::get<zx::Based>(objects->content).underlying, underlying);
    return objects.release();
}

zxArray* zxCreateEmptyObject(std::string_view className) {
    checkClassName(className);
    return zx::make<zx::Based>(zx::Shape(0, 0), std::string(className)).release();
}

zxArray* zxCreateNativeObject(std::string_view className, void* native, zx::NativeOperations const& operations) {
    zx::Array array = createNatives(className, zx::Shape(1, 1), operations);
    std::get<zx::Natives>(array->content).set(0, native);
    return array.release();
}

zxArray* zxCreateNativeObjectArray(std::string_view className, std::span<std::size_t const> dimensions,
                                   zx::NativeOperations const& operations) {
    return createNatives(className, zx::Shape(dimensions), operations).release();
}

zxArray const* zxGetUnderlyingArray(zxArray const* array) {
    auto const* const based = std::get_if<zx::Based>(&zx::notNull(array).content);
    return based != nullptr ? based->underlying : nullptr;
}

bool zxIsNativeObject(zxArray const* array) noexcept { return zx::holds<zx::Natives>(array); }

void* zxGetNative(zxArray const* array, std::size_t index) {
    auto const& natives = zx::contentOf<zx::Natives>(array, expected);
    zx::checkIndex(*array, index);
    return natives.at(index);
}

void zxSetNative(zxArray* array, std::size_t index, void* native) {
    auto& natives = zx::contentOf<zx::Natives>(array, expected);
    zx::checkIndex(*array, index);
    zx::touch(*array);
    natives.set(index, native);
}

zx::NativeOperations const& zxGetNativeOperations(zxArray const* array) {
    return zx::contentOf<zx::Natives>(array, expected).operations();
}
