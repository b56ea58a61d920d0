#pragma once
// An advisory lock between processes, held on a small file for as long as
// the object lives. Processes that take the same lock on the same file run
// one after the other; others are not stopped (advisory). The lock goes with
// the process: a killed holder releases it.
#include "basekit2/path.h"

#include <memory>
#include <string>

namespace basekit2 {

class file_lock_t
{
public:
    // Creates file when missing and waits until the lock is free. Null with
    // error set when the file cannot be opened or locked.
    static std::unique_ptr<file_lock_t> acquire(const path_t& file, std::wstring& error);
    // Null at once, without error, when another holds the lock.
    static std::unique_ptr<file_lock_t> try_acquire(const path_t& file, std::wstring& error);
    ~file_lock_t();

    file_lock_t(const file_lock_t&) = delete;
    file_lock_t& operator=(const file_lock_t&) = delete;

private:
    explicit file_lock_t(int fd) : m_fd(fd) {}
    static std::unique_ptr<file_lock_t> lock(const path_t& file, bool wait, std::wstring& error);
    int m_fd;
};

} // namespace basekit2
