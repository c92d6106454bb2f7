#include "files.h"

#include <fcntl.h>
#include <quay/zero/element_impl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <boost/uuid/uuid_io.hpp>
#include <cerrno>
#include <utility>

#include "failures.h"

namespace quay::zero::io {

SourceFile::SourceFile(std::filesystem::path const& path)
    : name_(path.string()), descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (descriptor_ < 0) reportUnreadable(name_, errno);
    opened_ = state();
}

SourceFile::~SourceFile() { ::close(descriptor_); }

namespace {

/// Calls `readSome` with the part of the buffer that is left, until the buffer is full or nothing more comes.
template <class F>
std::size_t fill(std::string const& name, std::span<char> buffer, F&& readSome) {
    std::size_t filled = 0;
    while (filled < buffer.size()) {
        ssize_t const count = readSome(buffer.subspan(filled), filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) reportUnreadable(name, errno);
        if (count == 0) break;
        filled += static_cast<std::size_t>(count);
    }
    return filled;
}

}  // namespace

std::size_t SourceFile::read(std::span<char> buffer) {
    return fill(name_, buffer,
                [&](std::span<char> rest, std::size_t) { return ::read(descriptor_, rest.data(), rest.size()); });
}

std::size_t SourceFile::readAt(std::span<char> buffer, std::uint64_t offset) const {
    return fill(name_, buffer, [&](std::span<char> rest, std::size_t filled) {
        return ::pread(descriptor_, rest.data(), rest.size(), static_cast<off_t>(offset + filled));
    });
}

SourceFile::State SourceFile::state() const noexcept {
    struct stat now {};
    if (::fstat(descriptor_, &now) != 0) return {};
    return {now.st_size, now.st_mtim.tv_sec, now.st_mtim.tv_nsec, S_ISREG(now.st_mode)};
}

bool SourceFile::hasOffsets() const noexcept { return opened_.isRegular; }
bool SourceFile::wasChanged() const noexcept { return state() != opened_; }

TargetFile::TargetFile(std::filesystem::path const& path) : path_(path) {
    std::error_code missing;
    std::filesystem::path const real = std::filesystem::canonical(path, missing);
    if (!missing) path_ = real;
    struct stat present {};
    bool const exists = ::stat(path_.c_str(), &present) == 0;
    if (exists && !S_ISREG(present.st_mode)) {
        descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CLOEXEC);
        if (descriptor_ < 0) fail();
        return;
    }
    // Renaming would replace even a write-protected file, so that is refused here.
    if (exists && ::access(path_.c_str(), W_OK) != 0) fail();
    aside_ = path_;
    aside_ += "." + to_string(ElementImpl::generateNewUuid()).substr(0, 8) + ".new";
    descriptor_ = ::open(aside_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor_ < 0) {
        aside_.clear();
        fail();
    }
    if (exists) static_cast<void>(::fchmod(descriptor_, present.st_mode & 07777));
}

TargetFile::~TargetFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!aside_.empty()) ::unlink(aside_.c_str());
}

void TargetFile::write(std::string_view text) {
    while (!text.empty()) {
        ssize_t const count = ::write(descriptor_, text.data(), text.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail();
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

void TargetFile::commit() {
    // Otherwise a crash could leave the name with a file whose content isn't on the disk yet.
    if (!aside_.empty() && ::fsync(descriptor_) != 0) fail();
    if (::close(std::exchange(descriptor_, -1)) != 0) fail();
    if (aside_.empty()) return;
    if (::rename(aside_.c_str(), path_.c_str()) != 0) fail();
    aside_.clear();
}

void TargetFile::fail() const { reportUnwritable(path_.string(), errno); }

}  // namespace quay::zero::io
