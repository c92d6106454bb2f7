// Files that are read in pieces, and files that are replaced as a whole.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace quay::zero::io {

/// A file that is open for reading. Reports CannotReadFile if it can't be opened or read, or is a directory.
class SourceFile {
public:
    explicit SourceFile(std::filesystem::path const& path);
    ~SourceFile();
    SourceFile(SourceFile const&) = delete;
    SourceFile& operator=(SourceFile const&) = delete;

    std::string const& name() const noexcept { return name_; }
    /// Reads the next bytes into the buffer and returns their number, which is less than the size of the buffer only at
    /// the end of the file.
    std::size_t read(std::span<char> buffer);
    /// Reads like `read`, but from an offset, if the file has offsets.
    std::size_t readAt(std::span<char> buffer, std::uint64_t offset) const;
    /// Whether the file is a regular one, which can be read from any offset.
    bool hasOffsets() const noexcept;
    /// Whether the file was written to since it was opened. Another file that took its name doesn't count.
    bool wasChanged() const noexcept;

private:
    struct State {
        std::int64_t size = 0;
        std::int64_t seconds = 0;
        std::int64_t nanoseconds = 0;
        bool isRegular = false;
        bool operator==(State const&) const = default;
    };
    State state() const noexcept;

    std::string name_;
    int descriptor_;
    State opened_;
};

/// A file that is written under another name first, NAME.xxxxxxxx.new. `commit` gives it the name, and makes it
/// durable; without a commit it is removed. It has the permissions, and if possible the owner, of the file that it
/// replaces. The target of a symbolic link is replaced, not the link; a link without a target is refused. What isn't a
/// regular file is written in place. Such files that were left by processes which ended while writing are removed.
/// Reports CannotWriteFile for whatever fails, a limit for the size of files included.
class TargetFile {
public:
    explicit TargetFile(std::filesystem::path const& path);
    ~TargetFile();
    TargetFile(TargetFile const&) = delete;
    TargetFile& operator=(TargetFile const&) = delete;

    void write(std::string_view text);
    void commit();

private:
    [[noreturn]] void fail() const;
    void syncFolder() const;

    std::filesystem::path path_;
    std::filesystem::path aside_;  // the name until `commit`; empty after it, and if the file is written in place
    int descriptor_ = -1;
};

}  // namespace quay::zero::io
