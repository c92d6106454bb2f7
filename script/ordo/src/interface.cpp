#include <ordo/class_identity.h>
#include <ordo/interface.h>

namespace ordo {
namespace {

void* copyObject(void* native) { return static_cast<OrdoInterface*>(native)->copy().release(); }

void destroyObject(void* native) noexcept { static_cast<OrdoInterface*>(native)->dropReference(); }

bool equalObjects(void const* left, void const* right) { return left == right; }

constinit zx::NativeOperations const operations{copyObject, destroyObject, equalObjects};

}  // namespace

OrdoObject OrdoInterface::make(ClassIdentity& ordoClass, void* native, NativeCopier copier) {
    return OrdoObject(new OrdoInterface(ordoClass, native, copier));
}

OrdoObject OrdoInterface::copy() {
    if (copier_ == nullptr || native_ == nullptr) {
        return OrdoObject(this);
    }
    OrdoObject copy = make(*class_, nullptr, copier_);
    copy->native_ = copier_(native_);
    return copy;
}

void* OrdoInterface::getNativePointer(InternedName className) const noexcept {
    return native_ != nullptr && class_->isA(className) ? native_ : nullptr;
}

void OrdoInterface::end() noexcept {
    if (native_ != nullptr) {
        class_->info().freeInstance(native_);
    }
    if (unbind_ != nullptr) {
        unbind_(*this);  // for a class description that didn't remove the binding
    }
    delete this;
}

zx::Array toArray(OrdoInterface& object) {
    std::string_view const className = object.classIdentity().name().text();
    if (object.native() == nullptr) {
        return zx::Array(zxCreateEmptyObject(className));
    }
    zx::Array array(zxCreateNativeObject(className, nullptr, operations));
    zxSetNative(array.get(), 0, OrdoObject(&object).release());
    return array;
}

OrdoInterface* objectAt(zxArray const* array, std::size_t index) noexcept {
    if (!zxIsNativeObject(array) || index >= zxGetNumberOfElements(array) ||
        &zxGetNativeOperations(array) != &operations) {
        return nullptr;
    }
    return static_cast<OrdoInterface*>(zxGetNative(array, index));
}

zx::NativeOperations const& scriptObjectOperations() noexcept { return operations; }

}  // namespace ordo
