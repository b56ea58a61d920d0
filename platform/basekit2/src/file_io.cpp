#include "basekit2/file_io.h"

#include "platkit/strings/convert.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <random>
#include <system_error>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace basekit2 {
namespace {

std::wstring describe(const char* step, int err)
{
    return platkit::strings::utf8_to_wide(std::string(step) + ": " + std::strerror(err));
}

} // namespace

bool read_file(const path_t& file, std::string& content, std::wstring& error)
{
    std::ifstream in(file.fs(), std::ios::binary);
    if (!in) {
        error = describe("cannot open", errno ? errno : ENOENT);
        return false;
    }
    // The size is a hint (the file may change meanwhile): read one byte
    // more than expected to see the end, and go on in blocks if it grew.
    std::string data;
    std::error_code ec;
    const auto size = std::filesystem::file_size(file.fs(), ec);
    size_t capacity = (ec ? 0 : static_cast<size_t>(size)) + 1;
    size_t used = 0;
    for (;;) {
        data.resize(capacity);
        in.read(data.data() + used, static_cast<std::streamsize>(capacity - used));
        used += static_cast<size_t>(in.gcount());
        if (!in)
            break;
        capacity += capacity / 2 + 65536;
    }
    if (in.bad()) {
        error = describe("cannot read", errno ? errno : EIO);
        return false;
    }
    data.resize(used);
    content = std::move(data);
    return true;
}

#ifndef _WIN32

namespace {

// Closes the descriptor and removes the temporary file unless released.
class temp_file_guard
{
public:
    temp_file_guard(int fd, std::string path) : m_fd(fd), m_path(std::move(path)) {}
    ~temp_file_guard()
    {
        if (m_fd >= 0)
            ::close(m_fd);
        if (!m_path.empty())
            ::unlink(m_path.c_str());
    }
    temp_file_guard(const temp_file_guard&) = delete;
    temp_file_guard& operator=(const temp_file_guard&) = delete;

    int fd() const { return m_fd; }
    const std::string& path() const { return m_path; }
    int close_fd()
    {
        const int rc = ::close(m_fd);
        m_fd = -1;
        return rc;
    }
    void release() { m_path.clear(); }

private:
    int m_fd;
    std::string m_path;
};

bool write_all(int fd, std::string_view content);

// Gathers small pieces into large writes.
class buffered_writer
{
public:
    explicit buffered_writer(int fd) : m_fd(fd) { m_buffer.reserve(capacity); }

    bool write(std::string_view piece)
    {
        if (m_buffer.size() + piece.size() > capacity && !flush())
            return false;
        if (piece.size() >= capacity)
            return write_all(m_fd, piece);
        m_buffer.append(piece);
        return true;
    }
    bool flush()
    {
        const bool ok = write_all(m_fd, m_buffer);
        m_buffer.clear();
        return ok;
    }

private:
    static constexpr size_t capacity = 1 << 20;
    int m_fd;
    std::string m_buffer;
};

bool write_all(int fd, std::string_view content)
{
    while (!content.empty()) {
        const ssize_t n = ::write(fd, content.data(), content.size());
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        content.remove_prefix(static_cast<size_t>(n));
    }
    return true;
}

} // namespace

write_error write_file_atomically(const path_t& file, std::string_view content, std::wstring& error)
{
    return write_file_atomically(file, std::vector<std::string_view>{content}, error);
}

write_error write_file_atomically(const path_t& file, const std::vector<std::string_view>& pieces,
                                  std::wstring& error)
{
    // A symlink stays a symlink: the file it leads to is replaced, beside
    // itself (a rename is atomic only within one folder).
    std::filesystem::path target = file.fs();
    for (int hops = 0; hops < 40; ++hops) {
        std::error_code ec;
        if (!std::filesystem::is_symlink(target, ec))
            break;
        const std::filesystem::path next = std::filesystem::read_symlink(target, ec);
        if (ec)
            break;
        target = next.is_absolute() ? next : target.parent_path() / next;
    }
    std::filesystem::path dir = target.parent_path();
    if (dir.empty())
        dir = ".";

    struct stat st{};
    const bool existed = ::stat(target.c_str(), &st) == 0;
    // A unique name, created with 0666 so that the kernel applies the umask
    // for a new file (no process-wide umask() calls, which would race with
    // other threads creating files).
    static std::atomic<unsigned> counter{0};
    static const unsigned seed = std::random_device{}();
    std::string temp_name;
    int fd = -1;
    for (int attempt = 0; attempt < 100 && fd < 0; ++attempt) {
        temp_name = (dir / ("." + target.filename().string() + "." + std::to_string(seed) + "-" +
                            std::to_string(::getpid()) + "-" + std::to_string(counter++) + ".tmp"))
                        .string();
        fd = ::open(temp_name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0 && errno != EEXIST)
            break;
    }
    if (fd < 0) {
        error = describe("cannot create a temporary file in the folder", errno);
        return write_error::create_temporary;
    }
    temp_file_guard tmp(fd, temp_name);
    if (existed) {
        // Keep the owner and group (possible for root, or for a group the
        // user is in) and then the mode, set-id bits included.
        if (st.st_uid != ::geteuid() || st.st_gid != ::getegid()) {
            if (::fchown(tmp.fd(), st.st_uid, st.st_gid) != 0 &&
                ::fchown(tmp.fd(), static_cast<uid_t>(-1), st.st_gid) != 0) {
                // Neither is allowed: the new file is the writer's, as with
                // any editor that saves by renaming.
            }
        }
        if (::fchmod(tmp.fd(), st.st_mode & 07777) != 0) {
            error = describe("cannot set the permissions of the temporary file", errno);
            return write_error::create_temporary;
        }
    }
    buffered_writer out(tmp.fd());
    for (const auto piece : pieces) {
        if (!out.write(piece)) {
            error = describe("cannot write", errno);
            return write_error::write;
        }
    }
    if (!out.flush()) {
        error = describe("cannot write", errno);
        return write_error::write;
    }
    if (::fsync(tmp.fd()) != 0) {
        error = describe("cannot flush to disk", errno);
        return write_error::flush;
    }
    if (tmp.close_fd() != 0) {
        error = describe("cannot close", errno);
        return write_error::flush;
    }
    if (::rename(tmp.path().c_str(), target.c_str()) != 0) {
        error = describe("cannot replace the file", errno);
        return write_error::rename;
    }
    tmp.release();
    // Make the rename itself durable; failure here does not undo the write.
    const int dir_fd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY);
    if (dir_fd >= 0) {
        ::fsync(dir_fd);
        ::close(dir_fd);
    }
    return write_error::none;
}

#else

write_error write_file_atomically(const path_t& file, std::string_view content, std::wstring& error)
{
    return write_file_atomically(file, std::vector<std::string_view>{content}, error);
}

write_error write_file_atomically(const path_t& file, const std::vector<std::string_view>& pieces,
                                  std::wstring& error)
{
    const std::filesystem::path target = file.fs();
    std::filesystem::path tmp = target;
    tmp += L".tmp";
    {
        std::ofstream out(tmp, std::ios::binary | std::ios::trunc);
        if (!out) {
            error = L"cannot create a temporary file in the folder";
            return write_error::create_temporary;
        }
        for (const auto piece : pieces)
            out.write(piece.data(), static_cast<std::streamsize>(piece.size()));
        out.flush();
        if (!out) {
            std::error_code ec;
            std::filesystem::remove(tmp, ec);
            error = L"cannot write";
            return write_error::write;
        }
    }
    std::error_code ec;
    std::filesystem::rename(tmp, target, ec);
    if (ec) {
        std::filesystem::remove(tmp, ec);
        error = L"cannot replace the file: " + platkit::strings::utf8_to_wide(ec.message());
        return write_error::rename;
    }
    return write_error::none;
}

#endif

} // namespace basekit2
