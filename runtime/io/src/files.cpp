#include "files.h"

#include <fcntl.h>
#include <quay/zero/element_impl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <boost/uuid/uuid_io.hpp>
#include <cerrno>
#include <csignal>
#include <ctime>
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

namespace {

/// How long an unfinished file is left alone whose writer doesn't hold its lock: it may not have locked it yet.
constexpr std::time_t kSecondsToLock = 60;

/// Whether this is the name under which a file of that name is written: with eight hexadecimal digits and "new" added.
bool isAsideOf(std::string const& file, std::string const& name) {
    std::size_t const size = file.size();
    return name.size() == size + 13 && name.starts_with(file) && name[size] == '.' && name.ends_with(".new") &&
           name.find_first_not_of("0123456789abcdef", size + 1) == size + 9;
}

/// Removes what processes that ended while they wrote the file have left behind. A living writer holds a lock.
void removeLeftOvers(std::filesystem::path const& path) {
    std::error_code ignored;
    std::filesystem::path const folder = path.has_parent_path() ? path.parent_path() : ".";
    for (auto const& entry : std::filesystem::directory_iterator(folder, ignored)) {
        if (!isAsideOf(path.filename().string(), entry.path().filename().string())) continue;
        int const left = ::open(entry.path().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
        if (left < 0) continue;
        struct stat state {};
        bool const isOld = ::fstat(left, &state) == 0 && state.st_mtime + kSecondsToLock < std::time(nullptr);
        if (isOld && ::flock(left, LOCK_EX | LOCK_NB) == 0) ::unlink(entry.path().c_str());
        ::close(left);
    }
}

/// Keeps the process from being ended by a write beyond its limit for the size of files, which then fails instead.
class FileSizeSignalBlocked {
public:
    FileSizeSignalBlocked() noexcept {
        sigemptyset(&signal_);
        sigaddset(&signal_, SIGXFSZ);
        sigset_t pending;
        wasPending_ = sigpending(&pending) == 0 && sigismember(&pending, SIGXFSZ) == 1;
        pthread_sigmask(SIG_BLOCK, &signal_, &before_);
    }
    ~FileSizeSignalBlocked() {
        timespec const now{};
        if (!wasPending_) sigtimedwait(&signal_, nullptr, &now);
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    FileSizeSignalBlocked(FileSizeSignalBlocked const&) = delete;
    FileSizeSignalBlocked& operator=(FileSizeSignalBlocked const&) = delete;

private:
    sigset_t signal_;
    sigset_t before_;
    bool wasPending_ = false;
};

}  // namespace

TargetFile::TargetFile(std::filesystem::path const& path) : path_(path) {
    std::error_code missing;
    std::filesystem::path const real = std::filesystem::canonical(path, missing);
    if (!missing) {
        path_ = real;
    } else if (std::filesystem::is_symlink(path, missing)) {
        reportUnwritable(path.string(), "it is a link to a file that isn't there");
    }
    struct stat present {};
    bool const exists = ::stat(path_.c_str(), &present) == 0;
    if (exists && !S_ISREG(present.st_mode)) {
        descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CLOEXEC);
        if (descriptor_ < 0) fail();
        return;
    }
    // Renaming would replace even a write-protected file, so that is refused here.
    if (exists && ::access(path_.c_str(), W_OK) != 0) fail();
    removeLeftOvers(path_);
    aside_ = path_;
    aside_ += "." + to_string(ElementImpl::generateNewUuid()).substr(0, 8) + ".new";
    descriptor_ = ::open(aside_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor_ < 0) {
        aside_.clear();
        fail();
    }
    static_cast<void>(::flock(descriptor_, LOCK_EX | LOCK_NB));
    if (exists) {
        // The owner first, since changing it may take bits of the mode away. Only some users may give files away.
        static_cast<void>(::fchown(descriptor_, present.st_uid, present.st_gid) == 0);
        static_cast<void>(::fchmod(descriptor_, present.st_mode & 07777));
    }
}

TargetFile::~TargetFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!aside_.empty()) ::unlink(aside_.c_str());
}

void TargetFile::write(std::string_view text) {
    FileSizeSignalBlocked const blocked;
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
    syncFolder();
}

/// Makes the new name durable. Some file systems can't sync a folder, which isn't a failure.
void TargetFile::syncFolder() const {
    std::filesystem::path const folder = path_.has_parent_path() ? path_.parent_path() : ".";
    int const descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    bool const failed = ::fsync(descriptor) != 0 && (errno == EIO || errno == ENOSPC || errno == EDQUOT);
    int const reason = errno;
    ::close(descriptor);
    if (failed) reportUnwritable(path_.string(), reason);
}

void TargetFile::fail() const { reportUnwritable(path_.string(), errno); }

}  // namespace quay::zero::io
