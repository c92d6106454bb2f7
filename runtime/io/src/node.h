// A piece of JSON in memory: one property's value while it is being read. Numbers keep their text, since JSON says
// nothing of how exact they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quay::zero::io {

struct Node {
    enum class Kind : std::uint8_t { Null, Boolean, Number, Text, List, Object };

    Kind kind = Kind::Null;
    bool truth = false;
    std::string text{};               // of a number or a text
    std::vector<Node> items{};        // of a list, or an object's values
    std::vector<std::string> keys{};  // of an object

    bool is(Kind other) const noexcept { return kind == other; }
    /// The value under a key, or null.
    Node const* find(std::string_view key) const noexcept {
        for (std::size_t i = 0; i < keys.size(); ++i) {
            if (keys[i] == key) return &items[i];
        }
        return nullptr;
    }
    /// The text in an object whose only key is that one, or null.
    Node const* escape(std::string_view key) const noexcept {
        return kind == Kind::Object && keys.size() == 1 && keys[0] == key ? &items[0] : nullptr;
    }
};

}  // namespace quay::zero::io
