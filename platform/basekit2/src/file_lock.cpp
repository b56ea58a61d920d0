#include "basekit2/file_lock.h"

#include "platkit/strings/convert.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace basekit2 {

std::unique_ptr<file_lock_t> file_lock_t::acquire(const path_t& file, std::wstring& error)
{
    return lock(file, true, error);
}

std::unique_ptr<file_lock_t> file_lock_t::try_acquire(const path_t& file, std::wstring& error)
{
    return lock(file, false, error);
}

std::unique_ptr<file_lock_t> file_lock_t::lock(const path_t& file, bool wait, std::wstring& error)
{
    auto why = [&](const char* what) {
        error = file.display() + L": " + platkit::strings::utf8_to_wide(what) + L": " +
                platkit::strings::utf8_to_wide(std::generic_category().message(errno));
        return nullptr;
    };
    const int fd = ::open(file.fs().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (fd < 0)
        return why("cannot open the lock file");
    // flock, not fcntl locks: those belong to the process and are lost when
    // any descriptor of the file closes, and do not exclude threads.
    int rc;
    do
        rc = ::flock(fd, LOCK_EX | (wait ? 0 : LOCK_NB));
    while (rc != 0 && errno == EINTR);
    if (rc != 0) {
        const int saved = errno;
        ::close(fd);
        errno = saved;
        if (!wait && saved == EWOULDBLOCK)
            return nullptr;
        return why("cannot lock");
    }
    return std::unique_ptr<file_lock_t>(new file_lock_t(fd));
}

file_lock_t::~file_lock_t() { ::close(m_fd); }

} // namespace basekit2
