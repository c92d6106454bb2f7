// Script objects: how scripts hold objects of native code.
#pragma once

#include <ordo/export.h>
#include <ordo/interned.h>

#include <zx/objects.h>

#include <cstddef>
#include <utility>

namespace ordo {

class ClassIdentity;
class OrdoClass;
class OrdoObject;

namespace factory::basic {
class BindingRegistry;
}

/// Makes a copy of a native object for another script object to hold; for classes of values.
using NativeCopier = void* (*)(void const* native);

/// A script object: a class and a pointer to the native object behind it. References are counted; when the last one is
/// released, the class description's freeInstance is called. Hold script objects by OrdoObject.
///
/// Script objects belong to the script thread: counts aren't atomic. A native object has the same address for its class
/// and for all of the class's ancestors.
class ORDO_API OrdoInterface {
public:
    /// Makes a script object of a class; without a native object if a constructor call will provide it.
    static OrdoObject make(ClassIdentity& ordoClass, void* native = nullptr, NativeCopier copier = nullptr);

    OrdoInterface(OrdoInterface const&) = delete;
    OrdoInterface& operator=(OrdoInterface const&) = delete;

    /// The class with its members; include <ordo/class.h> to call this.
    inline OrdoClass& getClass() const noexcept;
    ClassIdentity& classIdentity() const noexcept { return *class_; }

    /// The native object, or null if there is none.
    void* native() const noexcept { return native_; }
    /// The native object if the object's class is `className` or derives from it, else null.
    void* getNativePointer(InternedName className) const noexcept;

    /// The function that copies the native object; null for objects that have identity, which holders share.
    NativeCopier copier() const noexcept { return copier_; }

    /// This object; for a value, a script object that holds a copy of it.
    OrdoObject copy();

    /// Data that the host keeps with the object, such as its own object for it. Neither used nor owned here.
    void* peer() const noexcept { return peer_; }
    void setPeer(void* peer) noexcept { peer_ = peer; }

    void addReference() noexcept { ++references_; }
    /// Releases one reference; the last one destroys the object.
    void dropReference() noexcept {
        if (--references_ == 0) {
            end();
        }
    }

private:
    friend factory::basic::BindingRegistry;

    /// Removes the object's binding to its native object.
    using Unbind = void (*)(OrdoInterface& object) noexcept;

    OrdoInterface(ClassIdentity& ordoClass, void* native, NativeCopier copier) noexcept
        : class_(&ordoClass), native_(native), copier_(copier) {}
    ~OrdoInterface() = default;

    void end() noexcept;

    ClassIdentity* class_;
    void* native_;
    void* peer_ = nullptr;
    NativeCopier copier_;
    OrdoInterface* nextBound_ = nullptr;  // next object bound to the same address, for another class
    std::size_t references_ = 0;
    Unbind unbind_ = nullptr;  // null for an object that isn't bound
};

/// A counted pointer to a script object, or null.
class OrdoObject {
public:
    OrdoObject() noexcept = default;
    explicit OrdoObject(OrdoInterface* object) noexcept : object_(object) {
        if (object_ != nullptr) {
            object_->addReference();
        }
    }
    OrdoObject(OrdoObject const& other) noexcept : OrdoObject(other.object_) {}
    OrdoObject(OrdoObject&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    OrdoObject& operator=(OrdoObject other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~OrdoObject() {
        if (object_ != nullptr) {
            object_->dropReference();
        }
    }

    OrdoInterface* get() const noexcept { return object_; }
    OrdoInterface* operator->() const noexcept { return object_; }
    OrdoInterface& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    /// Returns the pointer without releasing its reference, which the caller takes over.
    OrdoInterface* release() noexcept { return std::exchange(object_, nullptr); }

    friend bool operator==(OrdoObject const&, OrdoObject const&) noexcept = default;

private:
    OrdoInterface* object_ = nullptr;
};

/// A 1 by 1 object array that holds the script object; if that has no native object, an empty array of its class.
/// Copying the array shares an object that has identity and copies an object that is a value.
ORDO_API zx::Array toArray(OrdoInterface& object);

/// The script object at a position of an object array; null if there is none, or if the array holds other things.
ORDO_API OrdoInterface* objectAt(zxArray const* array, std::size_t index = 0) noexcept;

/// The operations of object arrays for script objects. The arrays' native objects are `OrdoInterface*` as `void*`, with
/// one reference each.
ORDO_API zx::NativeOperations const& scriptObjectOperations() noexcept;

}  // namespace ordo
