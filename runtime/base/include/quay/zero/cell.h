// Cells: storage for one value of any type. Old values of properties and the payloads of Values are kept in cells.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace quay::zero {

/// 32 bytes that hold a T in place if it fits and moves without throwing, else a pointer to one on the heap. The cell
/// doesn't record its type: the code that reads or drops the value must name the T with which it was filled.
class Cell {
public:
    static constexpr std::size_t kSize = 32;

    Cell() noexcept = default;
    Cell(Cell const&) = delete;
    Cell& operator=(Cell const&) = delete;

    template <class T>
    static constexpr bool kInPlace = sizeof(T) <= kSize &&
                                     alignof(void*) % alignof(T) == 0 && std::is_nothrow_move_constructible_v<T>;

    template <class T, class... Args>
    T& emplace(Args&&... args) {
        if constexpr (kInPlace<T>) {
            return *::new (static_cast<void*>(bytes_)) T(std::forward<Args>(args)...);
        } else {
            T* const made = new T(std::forward<Args>(args)...);
            ::new (static_cast<void*>(bytes_)) T*(made);
            return *made;
        }
    }

    template <class T>
    T& get() noexcept {
        if constexpr (kInPlace<T>) {
            return *std::launder(reinterpret_cast<T*>(bytes_));
        } else {
            return **std::launder(reinterpret_cast<T**>(bytes_));
        }
    }
    template <class T>
    T const& get() const noexcept {
        return const_cast<Cell*>(this)->get<T>();
    }

    /// Destroys the value; the cell may then be filled again.
    template <class T>
    void drop() noexcept {
        if constexpr (kInPlace<T>) {
            std::destroy_at(&get<T>());
        } else {
            delete &get<T>();
        }
    }

    /// Moves the value into an unfilled cell; this one is unfilled afterwards.
    template <class T>
    void moveTo(Cell& target) noexcept {
        if constexpr (kInPlace<T>) {
            target.emplace<T>(std::move(get<T>()));
            drop<T>();
        } else {
            ::new (static_cast<void*>(target.bytes_)) T*(&get<T>());
        }
    }

private:
    alignas(void*) std::byte bytes_[kSize];
};

}  // namespace quay::zero
