#include "corr_engine/engine.h"

#include "basekit2/file_lock.h"

#include "corr_engine/best_location.h"
#include "platkit/strings/convert.h"

#include <algorithm>
#include <atomic>
#include <fstream>
#include <random>
#include <set>
#include <system_error>

namespace corr_engine {
namespace {

namespace fs = std::filesystem;
using basekit2::path_t;
using basekit2::threading::mutex_t;
using basekit2::threading::scoped_lock_t;
using platkit::strings::utf8_to_wide;
using platkit::strings::wide_to_utf8;

constexpr const wchar_t* data_folder = L"data";
constexpr const wchar_t* suppressions_folder = L"suppressions";
constexpr const wchar_t* staging_prefix = L".incoming-";
constexpr const wchar_t* lock_file = L".lock";

std::wstring unique_suffix()
{
    static std::atomic<unsigned> counter{0};
    static const unsigned seed = std::random_device{}();
    return std::to_wstring(seed) + L"-" + std::to_wstring(counter.fetch_add(1));
}

std::wstring reason(const std::error_code& ec)
{
    return utf8_to_wide(ec.message());
}

// A result name made fit for a file name: no separators or control characters.
std::wstring marker_stem(const std::wstring& name)
{
    std::wstring out;
    for (wchar_t c : name)
        out.push_back(c == L'/' || c == L'\\' || c == L':' || c < 0x20 ? L'_' : c);
    if (out.empty() || out == L"." || out == L"..")
        out = L"result";
    return out;
}

// Names under data/ are plain file names without the manifest's separator.
std::wstring data_name(const std::wstring& leaf)
{
    std::wstring out;
    for (wchar_t c : leaf)
        out.push_back(c == L'|' || c < 0x20 ? L'_' : c);
    while (!out.empty() && out.front() == L'.')
        out.erase(0, 1);
    return out.empty() ? std::wstring(L"output") : out;
}

std::wstring join(const std::vector<std::wstring>& items)
{
    std::wstring out;
    for (const auto& s : items)
        out += (out.empty() ? L"" : L", ") + s;
    return out;
}

bool is_empty_dir(const path_t& dir)
{
    std::error_code ec;
    return fs::is_directory(dir.fs(), ec) && fs::is_empty(dir.fs(), ec);
}

class engine_impl_t final : public basekit2::intrusive_pointer_impl_t<engine_t>
{
public:
    bool open_result(const path_t& marker_or_dir) override
    {
        path_t marker;
        if (!locate_marker(marker_or_dir, marker))
            return false;
        result_manifest_t manifest;
        std::wstring error;
        if (!manifest.read(marker, error))
            return fail(error);
        if (manifest.name.empty())
            manifest.name = marker.stem();
        scoped_lock_t lock(m_mutex);
        m_marker = marker;
        m_dir = marker.parent().empty() ? path_t(L".") : marker.parent();
        m_manifest = std::move(manifest);
        m_open = true;
        m_problems.reset();
        m_error.clear();
        return true;
    }

    bool create_result(const path_t& dir, const std::wstring& name) override
    {
        std::error_code ec;
        if (fs::exists(dir.fs(), ec) && !is_empty_dir(dir))
            return fail(dir.str() + L": already exists and is not an empty folder");
        result_manifest_t manifest;
        manifest.name = name.empty()
                            ? basekit2::display(fs::absolute(dir.fs(), ec).lexically_normal().filename())
                            : name;
        if (manifest.name.empty())
            manifest.name = L"result";
        manifest.created = utc_timestamp();
        fs::create_directories((dir / path_t(data_folder)).fs(), ec);
        if (!ec)
            fs::create_directories((dir / path_t(suppressions_folder)).fs(), ec);
        if (ec)
            return fail(dir.str() + L": cannot create the result folder: " + reason(ec));
        const path_t marker =
            dir / path_t(marker_stem(manifest.name) + L"." + result_manifest_t::marker_extension);
        std::wstring error;
        if (!manifest.write(marker, error))
            return fail(error);
        return open_result(marker);
    }

    bool create_result(const path_t& dir, const std::wstring& name,
                       const std::vector<path_t>& files, const std::vector<path_t>& source_dirs,
                       import_files_report_t& report) override
    {
        return create_result(dir, name, files, source_dirs, report, nullptr);
    }

    bool create_result(const path_t& dir, const std::wstring& name,
                       const std::vector<path_t>& files, const std::vector<path_t>& source_dirs,
                       import_files_report_t& report, notify2::IProgress* progress) override
    {
        report = import_files_report_t{};
        std::error_code ec;
        if (fs::exists(dir.fs(), ec) && !is_empty_dir(dir)) {
            report.ok = false;
            report.error = dir.str() + L": already exists and is not an empty folder";
            return fail(report.error);
        }
        const fs::path target = fs::absolute(dir.fs(), ec).lexically_normal();
        const fs::path parent = target.parent_path();
        fs::create_directories(parent, ec);
        const path_t staging(parent / basekit2::to_fs(L"." + basekit2::from_fs(target.filename()) +
                                                      L".partial-" + unique_suffix()));
        const std::wstring result_name = name.empty() ? basekit2::display(target.filename()) : name;

        auto scratch = engine_t::create();
        bool ok =
            scratch->create_result(staging, result_name) && scratch->set_source_dirs(source_dirs);
        if (!ok) {
            report.ok = false;
            report.error = scratch->last_error();
        } else {
            ok = scratch->import_files(files, report, progress);
        }
        if (ok) {
            if (is_empty_dir(path_t(target)))
                fs::remove(target, ec);
            fs::rename(staging.fs(), target, ec);
            if (ec) {
                ok = false;
                report.ok = false;
                report.error =
                    dir.str() + L": cannot move the new result into place: " + reason(ec);
            }
        }
        if (!ok) {
            fs::remove_all(staging.fs(), ec);
            return fail(report.error);
        }
        return open_result(path_t(target));
    }

    bool import_files(const std::vector<path_t>& files, import_files_report_t& report) override
    {
        return import_files(files, report, nullptr);
    }

    bool import_files(const std::vector<path_t>& files, import_files_report_t& report,
                      notify2::IProgress* progress) override
    {
        report = import_files_report_t{};
        scoped_lock_t import_lock(m_import_mutex);
        result_manifest_t manifest;
        path_t marker, dir;
        {
            scoped_lock_t lock(m_mutex);
            if (!m_open) {
                report.ok = false;
                report.error = L"no result is open";
                return fail(report.error);
            }
            manifest = m_manifest;
            marker = m_marker;
            dir = m_dir;
        }
        // Other processes (a second corrtool, another viewer) may import into
        // the same result: one at a time, each starting from the marker file
        // as the one before it left it.
        std::wstring lock_error;
        const auto result_lock = lock_result(dir, lock_error);
        if (!result_lock || !reread_manifest(marker, manifest, lock_error)) {
            report.ok = false;
            report.error = lock_error;
            return fail(report.error);
        }
        const path_t data_dir = dir / path_t(data_folder);
        std::error_code ec;
        fs::create_directories(data_dir.fs(), ec);
        // Under the lock, no other import is running: what is left is stale.
        remove_stale_staging(data_dir);
        const path_t staging = data_dir / path_t(staging_prefix + unique_suffix());
        fs::create_directories(staging.fs(), ec);
        if (ec) {
            report.ok = false;
            report.error =
                data_dir.str() + L": cannot create a folder for the import: " + reason(ec);
            return fail(report.error);
        }

        const bool ok = stage_files(files, manifest, data_dir, staging, report, progress) &&
                        commit(manifest, marker, data_dir, staging, report);
        fs::remove_all(staging.fs(), ec);
        if (!ok)
            return fail(report.error);
        scoped_lock_t lock(m_mutex);
        m_manifest = std::move(manifest);
        m_problems.reset();
        m_error.clear();
        return true;
    }

    bool set_source_dirs(const std::vector<path_t>& dirs) override
    {
        scoped_lock_t import_lock(m_import_mutex);
        scoped_lock_t lock(m_mutex);
        if (!m_open)
            return fail(L"no result is open");
        std::wstring lock_error;
        const auto result_lock = lock_result(m_dir, lock_error);
        result_manifest_t manifest = m_manifest;
        if (!result_lock || !reread_manifest(m_marker, manifest, lock_error))
            return fail(lock_error);
        manifest.source_dirs.clear();
        for (const auto& d : dirs) {
            std::error_code ec;
            manifest.source_dirs.emplace_back(fs::absolute(d.fs(), ec).lexically_normal());
        }
        std::wstring error;
        if (!manifest.write(m_marker, error))
            return fail(error);
        m_manifest = std::move(manifest);
        m_problems.reset();
        return true;
    }

    bool has_result() const override
    {
        scoped_lock_t lock(m_mutex);
        return m_open;
    }
    std::wstring get_result_name() const override
    {
        scoped_lock_t lock(m_mutex);
        return m_manifest.name;
    }
    path_t get_marker_file() const override
    {
        scoped_lock_t lock(m_mutex);
        return m_marker;
    }
    path_t get_result_dir() const override
    {
        scoped_lock_t lock(m_mutex);
        return m_dir;
    }
    path_t get_data_dir() const override
    {
        scoped_lock_t lock(m_mutex);
        return m_open ? m_dir / path_t(data_folder) : path_t();
    }
    path_t get_suppressions_dir() const override
    {
        scoped_lock_t lock(m_mutex);
        return m_open ? m_dir / path_t(suppressions_folder) : path_t();
    }
    std::vector<path_t> get_source_dirs() const override
    {
        scoped_lock_t lock(m_mutex);
        return m_manifest.source_dirs;
    }
    std::vector<path_t> get_data_files() const override
    {
        scoped_lock_t lock(m_mutex);
        std::vector<path_t> out;
        for (const auto& f : m_manifest.data_files)
            out.push_back(m_dir / path_t(data_folder) / path_t(f.name));
        return out;
    }
    result_manifest_t get_manifest() const override
    {
        scoped_lock_t lock(m_mutex);
        return m_manifest;
    }

    std::shared_ptr<const problem_list_t> get_problems() override
    {
        scoped_lock_t lock(m_mutex);
        if (!m_problems)
            load_problems();
        return m_problems;
    }

    import_files_report_t get_load_report() override
    {
        scoped_lock_t lock(m_mutex);
        if (!m_problems)
            load_problems();
        return m_load_report;
    }

    std::vector<path_t> get_source_files() override
    {
        const auto problems = get_problems();
        std::vector<std::string> dirs;
        for (const auto& d : get_source_dirs())
            dirs.push_back(d.utf8());
        const best_location_t filter(dirs);
        std::set<std::string> seen;
        std::vector<path_t> out;
        for (const auto& p : *problems)
            for (const auto& stack : p.stacks)
                for (const auto& frame : stack.frames) {
                    if (frame.source.empty() || frame.source.front() != '/' ||
                        !seen.insert(frame.source).second)
                        continue;
                    if (!dirs.empty() && !filter.in_source_dirs(frame.source))
                        continue;
                    const path_t file = path_t::from_utf8(frame.source);
                    std::error_code ec;
                    if (fs::is_regular_file(file.fs(), ec))
                        out.push_back(file);
                }
        std::sort(out.begin(), out.end());
        return out;
    }

    pack_source_t get_pack_source() override
    {
        pack_source_t source;
        source.result_dir = get_result_dir();
        source.source_files = get_source_files();
        return source;
    }

    suppressions_manager_t& get_suppressions_manager() override { return m_suppressions; }

    const std::wstring& last_error() const override { return m_error; }

private:
    bool fail(const std::wstring& error)
    {
        m_error = error;
        return false;
    }

    bool locate_marker(const path_t& where, path_t& marker)
    {
        std::error_code ec;
        if (fs::is_directory(where.fs(), ec)) {
            const auto found = basekit2::find_files(where, std::wstring(L"*.") +
                                                               result_manifest_t::marker_extension);
            if (found.empty())
                return fail(where.str() +
                            L": not a result folder (it holds no *.corr marker file)");
            if (found.size() > 1) {
                std::vector<std::wstring> names;
                for (const auto& f : found)
                    names.push_back(f.leaf());
                return fail(where.str() + L": holds several marker files (" + join(names) +
                            L"); open one of them");
            }
            marker = found.front();
            return true;
        }
        if (!fs::exists(where.fs(), ec))
            return fail(where.str() + L": no such result (neither a marker file nor a folder)");
        if (where.extension() != result_manifest_t::marker_extension)
            return fail(where.str() + L": not a result marker file (*.corr)");
        marker = where;
        return true;
    }

    static std::unique_ptr<basekit2::file_lock_t> lock_result(const path_t& dir, std::wstring& error)
    {
        return basekit2::file_lock_t::acquire(dir / path_t(lock_file), error);
    }

    // The marker as it is on disk now (another process may have added to it).
    static bool reread_manifest(const path_t& marker, result_manifest_t& manifest, std::wstring& error)
    {
        result_manifest_t current;
        if (!current.read(marker, error))
            return false;
        manifest = std::move(current);
        return true;
    }

    static void remove_stale_staging(const path_t& data_dir)
    {
        std::error_code ec;
        for (fs::directory_iterator it(data_dir.fs(), ec), end; !ec && it != end; it.increment(ec))
            if (it->is_directory(ec) &&
                basekit2::from_fs(it->path().filename()).rfind(staging_prefix, 0) == 0) {
                std::error_code ignored;
                fs::remove_all(it->path(), ignored);
            }
    }

    // A free name under data/ for a file: its own name, else "<stem>-2.<ext>", ...
    static std::wstring free_name(const path_t& file, const result_manifest_t& manifest,
                                  const path_t& data_dir, const std::set<std::wstring>& taken)
    {
        const std::wstring base = data_name(file.leaf());
        const path_t base_path(base);
        const std::wstring stem = base_path.stem(), ext = base_path.extension();
        auto used = [&](const std::wstring& n) {
            std::error_code ec;
            return taken.count(n) != 0 || fs::exists((data_dir / path_t(n)).fs(), ec) ||
                   std::any_of(manifest.data_files.begin(), manifest.data_files.end(),
                               [&](const data_file_t& d) { return d.name == n; });
        };
        std::wstring name = base;
        for (int i = 2; used(name); ++i)
            name = stem + L"-" + std::to_wstring(i) + (ext.empty() ? L"" : L"." + ext);
        return name;
    }

    // Copies every file to the staging folder and checks the copy with its
    // importer, so that what is checked is exactly what is kept.
    bool stage_files(const std::vector<path_t>& files, const result_manifest_t& manifest,
                     const path_t& data_dir, const path_t& staging, import_files_report_t& report,
                     notify2::IProgress* progress)
    {
        result_converter_t converter;
        import_context_t context;
        for (const auto& d : manifest.source_dirs)
            context.source_dirs.push_back(d.utf8());
        std::set<std::wstring> taken;
        auto failed = [&](const std::wstring& error) {
            report.ok = false;
            report.error = error;
            return false;
        };
        // Cancellation is looked at between the steps of a file (copy, check),
        // the points where stopping leaves only the staging folder behind.
        auto cancelled = [&] {
            if (!progress || !progress->is_cancelled())
                return false;
            report.cancelled = true;
            failed(L"the import was cancelled");
            return true;
        };
        std::vector<double> sizes;
        double total = 0;
        for (const auto& file : files) {
            std::error_code ec;
            const auto size = fs::file_size(file.fs(), ec);
            sizes.push_back(ec ? 0.0 : static_cast<double>(size));
            total += sizes.back();
        }
        if (progress)
            progress->begin(files.empty() ? std::wstring() : files.front().str(), total > 0 ? total : 1);
        for (size_t index = 0; index < files.size(); ++index) {
            const path_t& file = files[index];
            if (cancelled())
                return false;
            if (progress)
                progress->set_status(file.str());
            std::error_code ec;
            if (!fs::exists(file.fs(), ec))
                return failed(file.str() + L": no such file");
            if (!fs::is_regular_file(file.fs(), ec))
                return failed(file.str() + L": not a regular file");
            const auto importer = converter.find_importer(file);
            if (!importer) {
                const auto supported = converter.get_supported_extensions();
                if (std::find(supported.begin(), supported.end(), file.extension()) ==
                    supported.end())
                    return failed(file.str() + L": files with the extension \"" + file.extension() +
                                  L"\" cannot be imported (supported: " + join(supported) + L")");
                return failed(
                    file.str() +
                    L": not a recognised analyser output (expected Valgrind XML written with "
                    L"--xml=yes, or an AddressSanitizer, LeakSanitizer, ThreadSanitizer or "
                    L"UndefinedBehaviorSanitizer report)");
            }
            file_import_t item;
            item.file = file;
            item.stored_as = free_name(file, manifest, data_dir, taken);
            taken.insert(item.stored_as);
            const path_t copy = staging / path_t(item.stored_as);
            fs::copy_file(file.fs(), copy.fs(), ec);
            if (ec)
                return failed(file.str() + L": cannot copy into the result: " + reason(ec));
            if (cancelled())
                return false;
            item.report = importer->scan_file(copy, file.str());
            if (!item.report.ok)
                return failed(item.report.error);
            report.files.push_back(std::move(item));
            if (progress)
                progress->progressed(sizes[index]);
        }
        return !cancelled();
    }

    // Moves the staged files into data/ and records them in the marker file,
    // which is the step that makes them part of the result.
    bool commit(result_manifest_t& manifest, const path_t& marker, const path_t& data_dir,
                const path_t& staging, import_files_report_t& report)
    {
        std::vector<path_t> moved;
        auto undo = [&](const std::wstring& error) {
            std::error_code ec;
            for (const auto& p : moved)
                fs::remove(p.fs(), ec);
            report.ok = false;
            report.error = error;
            return false;
        };
        for (const auto& item : report.files) {
            std::error_code ec;
            const path_t target = data_dir / path_t(item.stored_as);
            fs::rename((staging / path_t(item.stored_as)).fs(), target.fs(), ec);
            if (ec)
                return undo(target.str() + L": cannot move the imported file into place: " +
                            reason(ec));
            moved.push_back(target);
            manifest.data_files.push_back(
                data_file_t{item.stored_as, utf8_to_wide(item.report.tool), item.report.problems});
            if (manifest.command.empty())
                manifest.command = utf8_to_wide(item.report.command);
        }
        manifest.update_tools();
        std::wstring error;
        if (!manifest.write(marker, error))
            return undo(error);
        return true;
    }

    // Holds m_mutex.
    void load_problems()
    {
        m_load_report = import_files_report_t{};
        auto problems = std::make_shared<problem_list_t>();
        problem_list_t overflow;
        result_converter_t converter;
        import_context_t context;
        for (const auto& d : m_manifest.source_dirs)
            context.source_dirs.push_back(d.utf8());
        std::uint64_t base = 1;
        for (const auto& data : m_manifest.data_files) {
            file_import_t item;
            item.file = m_dir / path_t(data_folder) / path_t(data.name);
            item.stored_as = data.name;
            const auto importer = converter.find_importer(item.file);
            if (!importer) {
                item.report.ok = false;
                item.report.error = item.file.str() +
                                    (item.file.exists() ? L": no importer reads this file any more"
                                                        : L": missing from the result");
            } else {
                item.report = importer->import_file(item.file, context, [&](probstore3::problem_t&& p) {
                    // Ids past the count recorded at import go after every file.
                    if (p.id > data.problems) {
                        overflow.push_back(std::move(p));
                        return;
                    }
                    p.id += base - 1;
                    problems->push_back(std::move(p));
                });
            }
            if (!item.report.ok && m_load_report.ok) {
                m_load_report.ok = false;
                m_load_report.error = item.report.error;
            }
            m_load_report.files.push_back(std::move(item));
            base += data.problems;
        }
        for (auto& p : overflow) {
            p.id = base++;
            problems->push_back(std::move(p));
        }
        m_problems = std::move(problems);
    }

    mutable mutex_t m_mutex;        // the state below
    mutable mutex_t m_import_mutex; // one import at a time; reads go on meanwhile
    bool m_open = false;
    path_t m_marker;
    path_t m_dir;
    result_manifest_t m_manifest;
    std::shared_ptr<const problem_list_t> m_problems;
    import_files_report_t m_load_report;
    std::wstring m_error;
    suppressions_manager_t m_suppressions;
};

} // namespace

basekit2::intrusive_pointer_t<engine_t> engine_t::create()
{
    return basekit2::intrusive_pointer_t<engine_t>(new engine_impl_t);
}

} // namespace corr_engine
