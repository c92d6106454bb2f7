// A piece of JSON in memory: the value of one property while it is being read.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quay::zero::io {

struct Node {
    enum class Kind : std::uint8_t { Null, Boolean, Number, Text, List, Object };

    Kind kind = Kind::Null;
    bool truth = false;               // of a boolean
    std::string text{};               // of a text; of a number as it was written, since its type decides its precision
    std::vector<Node> items{};        // of a list; of an object the values, in the order of its keys
    std::vector<std::string> keys{};  // of an object

    bool is(Kind other) const noexcept { return kind == other; }
    /// The value of that key of an object, or null.
    Node const* find(std::string_view key) const noexcept;
    /// The value of that key if it is the only one of an object, or null.
    Node const* escape(std::string_view key) const noexcept;
};

/// What a node is, for messages: "a number".
char const* describe(Node const& node) noexcept;

}  // namespace quay::zero::io
