// Files: reading in pieces, and writing aside before taking the old file's place.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace quay::zero::io {

/// A file opened for reading. CannotReadFile if it can't be opened, is a directory or fails to read.
class SourceFile {
public:
    explicit SourceFile(std::filesystem::path const& path);
    ~SourceFile();
    SourceFile(SourceFile const&) = delete;
    SourceFile& operator=(SourceFile const&) = delete;

    std::string const& name() const noexcept { return name_; }
    /// Fills the room as far as it goes; less comes at the end of the file alone.
    std::size_t read(std::span<char> room);
    /// The same from a place in the file, for files that have places.
    std::size_t readAt(std::span<char> room, std::uint64_t offset) const;
    bool hasPlaces() const noexcept;
    /// Whether somebody wrote to the file since it was opened. Replacing it is no writing.
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

/// A file that takes the place of another one, of the same permissions, when it is complete, and vanishes otherwise.
/// A link is followed; what is no regular file is written straight away. CannotWriteFile.
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

    std::filesystem::path path_;
    std::filesystem::path aside_;  // empty once it isn't there, or where it never was
    int descriptor_ = -1;
};

}  // namespace quay::zero::io
