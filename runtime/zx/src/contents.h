// What arrays other than plain ones hold. Elements that are arrays are null until they are set, and read as an empty
// array. The array releases them before its content is destroyed.
#pragma once

#include <zx/native_operations.h>
#include <zx/types.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zx {

struct Cells {
    explicit Cells(std::size_t count) : elements(count) {}

    std::vector<zxArray*> elements;
};

class Structs {
public:
    struct Field {
        std::string name;
        std::vector<zxArray*> values;  // one for each element
    };

    /// In the order in which they were added.
    std::vector<Field> const& fields() const { return fields_; }
    std::vector<zxArray*>& values(std::size_t number) { return fields_[number].values; }

    std::optional<std::size_t> find(std::string_view name) const;
    /// Adds a field that isn't there yet, for so many elements.
    Field& add(std::string_view name, std::size_t count);
    void remove(std::size_t number);

private:
    struct Hash : std::hash<std::string_view> {
        using is_transparent = void;
    };

    std::vector<Field> fields_;
    // The fields' numbers; empty while there are few, which are found faster by looking at each.
    std::unordered_map<std::string, std::size_t, Hash, std::equal_to<>> numbers_;
};

/// `string` objects.
struct Texts {
    explicit Texts(std::size_t count) : elements(count) {}

    std::vector<std::u16string> elements;
};

/// Objects that are based on the elements of a plain array of the same shape, or no objects at all.
struct Based {
    explicit Based(std::string name) : className(std::move(name)) {}

    std::string className;
    zxArray* underlying = nullptr;
};

/// Native objects.
class Natives {
public:
    Natives(std::string_view className, NativeOperations const& operations, std::size_t count)
        : className_(className), operations_(&operations), elements_(count) {}
    Natives(Natives const& other);
    Natives(Natives&&) = delete;
    Natives& operator=(Natives const&) = delete;
    Natives& operator=(Natives&&) = delete;
    ~Natives() { clear(); }

    std::string const& className() const { return className_; }
    NativeOperations const& operations() const { return *operations_; }
    void* at(std::size_t index) const { return elements_[index]; }
    void set(std::size_t index, void* native) noexcept;

    bool equals(Natives const& other) const;

private:
    void clear() noexcept;

    std::string className_;
    NativeOperations const* operations_;
    std::vector<void*> elements_;
};

}  // namespace zx
