#include "corr_engine/zipfile.h"

#include "platkit/strings/convert.h"

#include <zip.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace corr_engine {
namespace {

std::wstring libzip_error(zip_t* z)
{
    return platkit::strings::utf8_to_wide(zip_error_strerror(zip_get_error(z)));
}

// Creates and removes a file beside target: libzip only touches the folder
// when the archive is written, and a user should learn at once that it
// cannot be.
bool can_create_beside(const fs::path& target, std::wstring& why)
{
    static std::atomic<unsigned> counter{0};
    const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    fs::path probe = target;
    probe += ".probe-" + std::to_string(stamp) + "-" + std::to_string(counter++);
    std::FILE* f = std::fopen(probe.c_str(), "wx");
    if (!f) {
        why = platkit::strings::utf8_to_wide(std::generic_category().message(errno));
        return false;
    }
    std::fclose(f);
    std::error_code ec;
    fs::remove(probe, ec);
    return true;
}

} // namespace

zipfile_impl_t::~zipfile_impl_t()
{
    discard();
}

void zipfile_impl_t::set_error(const std::wstring& what)
{
    m_error = m_path.str() + L": " + what;
}

bool zipfile_impl_t::open_for_writing(const basekit2::path_t& target)
{
    discard();
    m_path = target;
    m_error.clear();
    const fs::path p = target.fs();
    std::error_code ec;
    if (target.empty()) {
        m_error = L"No archive file name was given.";
        return false;
    }
    if (fs::is_directory(p, ec)) {
        set_error(L"this is a folder");
        return false;
    }
    const fs::path folder = p.has_parent_path() ? p.parent_path() : fs::path(".");
    if (!fs::is_directory(folder, ec)) {
        set_error(L"the folder does not exist");
        return false;
    }
    std::wstring why;
    if (!can_create_beside(p, why)) {
        set_error(L"cannot write in this folder (" + why + L")");
        return false;
    }
    int code = 0;
    m_zip = zip_open(p.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code);
    if (!m_zip) {
        zip_error_t err;
        zip_error_init_with_code(&err, code);
        set_error(platkit::strings::utf8_to_wide(zip_error_strerror(&err)));
        zip_error_fini(&err);
        return false;
    }
    return true;
}

bool zipfile_impl_t::close()
{
    if (!m_zip)
        return true;
    if (zip_close(m_zip) == 0) {
        m_zip = nullptr;
        return true;
    }
    set_error(libzip_error(m_zip));
    discard();
    return false;
}

void zipfile_impl_t::discard()
{
    if (m_zip)
        zip_discard(m_zip);
    m_zip = nullptr;
}

} // namespace corr_engine
