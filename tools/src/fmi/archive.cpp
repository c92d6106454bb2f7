#include "archive.h"

#include <sys/stat.h>
#include <zip.h>

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <memory>
#include <string_view>
#include <system_error>

#include "../failure.h"

namespace modelref::fmi {

namespace {

constexpr char kDescription[] = "modelDescription.xml";
// Limits far above any real description; a file that exceeds them is meant to exhaust memory or time.
constexpr std::uint64_t kLargestText = std::uint64_t{64} << 20;
constexpr std::uint64_t kLargestArchive = std::uint64_t{4} << 30;
constexpr zip_int64_t kMostEntries = 1'000'000;

struct CloseArchive {
    void operator()(zip_t* archive) const noexcept { zip_discard(archive); }
};
struct CloseEntry {
    void operator()(zip_file_t* entry) const noexcept { zip_fclose(entry); }
};
using Archive = std::unique_ptr<zip_t, CloseArchive>;
using Entry = std::unique_ptr<zip_file_t, CloseEntry>;

[[noreturn]] void fail(std::string const& file, std::string const& reason) { throw Failure(file + ": " + reason); }

std::string systemReason(int error) { return "can't be read: " + std::generic_category().message(error); }

Archive open(std::string const& file) {
    int code = 0;
    Archive archive(zip_open(file.c_str(), ZIP_RDONLY | ZIP_CHECKCONS, &code));
    if (archive == nullptr) {
        zip_error_t error;
        zip_error_init_with_code(&error, code);
        std::string const reason = zip_error_strerror(&error);
        zip_error_fini(&error);
        fail(file, "the archive is damaged: " + reason);
    }
    return archive;
}

/// Whether the path of an entry stays inside the folder in which the archive is unpacked.
bool staysInside(std::string_view name) {
    if (name.empty() || name.front() == '/' || name.find('\\') != std::string_view::npos) return false;
    if (name.size() > 1 && name[1] == ':') return false;
    for (std::size_t begin = 0; begin <= name.size();) {
        std::size_t const end = std::min(name.find('/', begin), name.size());
        if (name.substr(begin, end - begin) == "..") return false;
        begin = end + 1;
    }
    return true;
}

/// Whether an entry made on Unix is a symbolic link.
bool isLink(zip_t* archive, zip_uint64_t index) {
    zip_uint8_t system = 0;
    zip_uint32_t attributes = 0;
    zip_file_get_external_attributes(archive, index, 0, &system, &attributes);
    return system == ZIP_OPSYS_UNIX && S_ISLNK(attributes >> 16);
}

/// The index of the description's entry. Checks the names of all entries.
zip_uint64_t findDescription(std::string const& file, zip_t* archive) {
    zip_int64_t const count = zip_get_num_entries(archive, 0);
    if (count > kMostEntries) fail(file, "the archive has " + std::to_string(count) + " entries, which are too many");
    zip_int64_t found = -1;
    for (zip_int64_t i = 0; i < count; ++i) {
        char const* const name = zip_get_name(archive, static_cast<zip_uint64_t>(i), ZIP_FL_ENC_RAW);
        if (name == nullptr || !staysInside(name)) {
            fail(file, "the archive names a file outside itself: " + inQuotes(name == nullptr ? "" : name));
        }
        if (std::string_view(name) != kDescription) continue;
        if (found >= 0) fail(file, std::string("the archive has ") + kDescription + " twice");
        found = i;
    }
    if (found < 0) fail(file, std::string("the archive has no ") + kDescription);
    return static_cast<zip_uint64_t>(found);
}

std::string unpack(std::string const& file, zip_t* archive, zip_uint64_t index) {
    std::string const name = std::string(kDescription) + " in the archive ";
    if (isLink(archive, index)) fail(file, name + "is a link");
    zip_stat_t stat;
    if (zip_stat_index(archive, index, 0, &stat) != 0) fail(file, name + "is damaged");
    if ((stat.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && stat.encryption_method != ZIP_EM_NONE) {
        fail(file, name + "is encrypted");
    }
    Entry const entry(zip_fopen_index(archive, index, 0));
    if (entry == nullptr) fail(file, name + "can't be unpacked: " + zip_strerror(archive));
    // The size that the archive states may be wrong.
    std::string text;
    char piece[1 << 16];
    while (true) {
        zip_int64_t const count = zip_fread(entry.get(), piece, sizeof piece);
        if (count < 0) fail(file, name + "is damaged: " + zip_file_strerror(entry.get()));
        if (count == 0) return text;
        text.append(piece, static_cast<std::size_t>(count));
        if (text.size() > kLargestText) fail(file, name + "is larger than 64 MiB");
    }
}

std::string readRest(std::string const& file, std::ifstream& stream, std::string text) {
    char piece[1 << 16];
    while (stream.read(piece, sizeof piece) || stream.gcount() > 0) {
        text.append(piece, static_cast<std::size_t>(stream.gcount()));
        if (text.size() > kLargestText) fail(file, "the file is larger than 64 MiB");
    }
    return text;
}

}  // namespace

std::string readDescriptionText(std::filesystem::path const& path) {
    std::string const file = path.string();
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0) fail(file, systemReason(errno));
    if (S_ISDIR(status.st_mode)) fail(file, systemReason(EISDIR));
    std::ifstream stream(path, std::ios::binary);
    if (!stream) fail(file, systemReason(errno));
    // Keep what was read, since a pipe can't be read twice.
    std::string text(2, '\0');
    stream.read(text.data(), 2);
    text.resize(static_cast<std::size_t>(stream.gcount()));
    bool const isArchive = path.extension() == ".fmu" || text == "PK";
    if (!isArchive) return readRest(file, stream, std::move(text));
    if (!S_ISREG(status.st_mode)) fail(file, "an archive can't be read from a pipe");
    if (static_cast<std::uint64_t>(status.st_size) > kLargestArchive) fail(file, "the archive is larger than 4 GiB");
    Archive const archive = open(file);
    return unpack(file, archive.get(), findDescription(file, archive.get()));
}

}  // namespace modelref::fmi
