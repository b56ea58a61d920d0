// Packing a result into a zip archive. Files are read through a counting
// zip source so that progress is reported per byte compressed; libzip's
// progress and cancel callbacks are where the packing thread reports and
// checks for cancellation while libzip compresses. Large results are
// compressed on several threads into temporary shard archives whose
// compressed entries are then copied, without recompressing, into the
// target archive.
#include "corr_engine/archiver.h"

#include "corr_engine/engine.h"

#include "basekit2/path.h"
#include "platkit/strings/convert.h"

#include <sys/stat.h>
#include <zip.h>
#include <zlib.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace fs = std::filesystem;
using platkit::strings::utf8_to_wide;

namespace corr_engine {
namespace {

// Below this much data one thread is as fast: shards cost a second write.
constexpr std::uint64_t parallel_threshold = 16u << 20;
constexpr unsigned max_threads = 4;
constexpr size_t sample_size = 64u << 10;
// Copying shards into the target is cheap next to compressing; this share
// of the bar is kept for it.
constexpr double assembly_share = 0.03;

struct entry_t
{
    fs::path file;    // empty for a folder entry
    std::string name; // name in the archive, UTF-8, '/' separated; folders end in '/'
    std::uint64_t size = 0;
    std::time_t mtime = 0;
    bool store = false; // already compressed data: stored as it is
    unsigned shard = 0;
    zip_int64_t shard_index = -1;
};

void report(notify2::IMessenger* messenger, std::uint32_t type, const std::wstring& text)
{
    if (messenger)
        messenger->message(type, text.c_str());
}

// Data that deflate cannot shrink (archives, images, random data) is stored:
// compressing it costs time and gains nothing. Judged on the first 64 KiB.
bool looks_incompressible(const fs::path& file, std::uint64_t size)
{
    if (size < sample_size)
        return false;
    std::FILE* f = std::fopen(file.c_str(), "rb");
    if (!f)
        return false;
    std::vector<Bytef> in(sample_size);
    const size_t got = std::fread(in.data(), 1, in.size(), f);
    std::fclose(f);
    uLongf out_size = compressBound(static_cast<uLong>(got));
    std::vector<Bytef> out(out_size);
    if (compress2(out.data(), &out_size, in.data(), static_cast<uLong>(got), 1) != Z_OK)
        return false;
    return out_size > got * 97 / 100;
}

bool file_info(const fs::path& file, std::uint64_t& size, std::time_t& mtime)
{
    struct stat st
    {
    };
    if (::stat(file.c_str(), &st) != 0 || !S_ISREG(st.st_mode))
        return false;
    size = static_cast<std::uint64_t>(st.st_size);
    mtime = st.st_mtime;
    return true;
}

// Where a failure of a counting source is kept, so that the error message
// can name the file.
struct failure_t
{
    std::mutex mutex;
    fs::path file;
    std::wstring reason;

    void set(const fs::path& f, int err)
    {
        std::lock_guard lock(mutex);
        if (file.empty()) {
            file = f;
            reason = utf8_to_wide(std::generic_category().message(err));
        }
    }
};

// A zip source over a file that counts the bytes it hands to libzip.
struct counting_source_t
{
    fs::path path;
    std::uint64_t size;
    std::time_t mtime;
    std::atomic<std::uint64_t>* counter;
    failure_t* failure;
    std::FILE* f = nullptr;
    zip_error_t error{};

    static zip_int64_t callback(void* ud, void* data, zip_uint64_t len, zip_source_cmd_t cmd)
    {
        auto* self = static_cast<counting_source_t*>(ud);
        switch (cmd) {
        case ZIP_SOURCE_OPEN:
            self->f = std::fopen(self->path.c_str(), "rb");
            if (!self->f)
                return self->fail(ZIP_ER_OPEN, errno);
            return 0;
        case ZIP_SOURCE_READ: {
            const size_t n = std::fread(data, 1, static_cast<size_t>(len), self->f);
            if (n < len && std::ferror(self->f))
                return self->fail(ZIP_ER_READ, errno);
            self->counter->fetch_add(n, std::memory_order_relaxed);
            return static_cast<zip_int64_t>(n);
        }
        case ZIP_SOURCE_CLOSE:
            if (self->f)
                std::fclose(self->f);
            self->f = nullptr;
            return 0;
        case ZIP_SOURCE_STAT: {
            auto* st = static_cast<zip_stat_t*>(data);
            zip_stat_init(st);
            st->size = self->size;
            st->mtime = self->mtime;
            st->valid = ZIP_STAT_SIZE | ZIP_STAT_MTIME;
            return sizeof(zip_stat_t);
        }
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(&self->error, data, len);
        case ZIP_SOURCE_FREE:
            if (self->f)
                std::fclose(self->f);
            zip_error_fini(&self->error);
            delete self;
            return 0;
        case ZIP_SOURCE_SUPPORTS:
            return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ,
                                                  ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                                  ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, -1);
        default:
            zip_error_set(&self->error, ZIP_ER_OPNOTSUPP, 0);
            return -1;
        }
    }

    zip_int64_t fail(int zip_code, int err)
    {
        zip_error_set(&error, zip_code, err);
        failure->set(path, err);
        return -1;
    }
};

// Adds the entries to z with the given compression; folder entries too.
// Returns false with a libzip error text.
bool add_entries(zip_t* z, std::vector<entry_t*>& entries, int level,
                 std::atomic<std::uint64_t>& counter, failure_t& failure, bool shard_names,
                 std::wstring& error)
{
    for (size_t i = 0; i < entries.size(); ++i) {
        entry_t* e = entries[i];
        zip_int64_t index = -1;
        // Shard archives need no real names: the target gets those.
        const std::string name = shard_names ? std::to_string(i) : e->name;
        if (e->file.empty()) {
            index = zip_dir_add(z, name.c_str(), ZIP_FL_ENC_UTF_8);
        } else {
            auto* ctx = new counting_source_t{e->file, e->size, e->mtime, &counter, &failure};
            zip_error_init(&ctx->error);
            zip_source_t* src = zip_source_function(z, &counting_source_t::callback, ctx);
            if (!src) {
                zip_error_fini(&ctx->error);
                delete ctx;
            } else {
                index = zip_file_add(z, name.c_str(), src, ZIP_FL_ENC_UTF_8);
                if (index < 0)
                    zip_source_free(src);
                else if (zip_set_file_compression(z, static_cast<zip_uint64_t>(index),
                                                  e->store ? ZIP_CM_STORE : ZIP_CM_DEFLATE,
                                                  e->store ? 0 : static_cast<zip_uint32_t>(level)) <
                         0)
                    index = -1;
            }
        }
        if (index < 0) {
            error = utf8_to_wide(zip_error_strerror(zip_get_error(z)));
            return false;
        }
        e->shard_index = index;
    }
    return true;
}

class packer_t
{
public:
    packer_t(zip_t* zip, const basekit2::path_t& target, notify2::IMessenger* messenger,
             notify2::IProgress* progress, const pack_options_t& options)
        : m_zip(zip), m_target(target), m_messenger(messenger), m_progress(progress),
          m_options(options)
    {
    }

    // True once the target archive was written (and libzip freed it).
    bool closed() const { return m_closed; }

    archiver_t::error_code_t run(const pack_source_t& source, unsigned flags)
    {
        if (!m_zip) {
            report(m_messenger, notify2::msg_error,
                   L"The archive " + m_target.str() + L" is not open for writing.");
            return archiver_t::write_failed;
        }
        auto rc = collect(source, flags);
        if (rc != archiver_t::success)
            return rc;
        for (auto& e : m_entries)
            m_total += static_cast<double>(e.size);
        if (m_progress)
            m_progress->begin(L"Packing " + source.result_dir.leaf(), std::max(1.0, m_total));

        unsigned threads = m_options.threads
                               ? m_options.threads
                               : std::min(max_threads, std::thread::hardware_concurrency());
        size_t files = 0;
        for (auto& e : m_entries)
            files += e.file.empty() ? 0 : 1;
        threads = static_cast<unsigned>(
            std::min<size_t>(std::max(1u, threads), std::max<size_t>(1, files)));
        if (m_options.threads == 0 && m_total < static_cast<double>(parallel_threshold))
            threads = 1;
        return threads > 1 ? pack_sharded(threads) : pack_direct();
    }

private:
    // Parts of an archive are written beside it as "<archive>.part<N>-<stamp>".
    static bool is_part_of(const fs::path& file, const fs::path& target)
    {
        const std::string name = file.filename().native();
        const std::string prefix = target.filename().native() + ".part";
        if (name.compare(0, prefix.size(), prefix) != 0 || name.size() == prefix.size())
            return false;
        return name.find_first_not_of("0123456789-", prefix.size()) == std::string::npos;
    }

    // Parts left by an export that was killed before it could remove them.
    static void remove_leftover_parts(const fs::path& target)
    {
        std::error_code ec;
        for (fs::directory_iterator it(target.parent_path(), ec), end; !ec && it != end; it.increment(ec)) {
            std::error_code fec;
            if (is_part_of(it->path(), target) && it->is_regular_file(fec))
                fs::remove(it->path(), fec);
        }
    }

    archiver_t::error_code_t collect(const pack_source_t& source, unsigned flags)
    {
        const fs::path dir = source.result_dir.fs();
        std::error_code ec;
        if (source.result_dir.empty() || !fs::is_directory(dir, ec)) {
            report(m_messenger, notify2::msg_error,
                   L"The result folder " + source.result_dir.str() + L" does not exist.");
            return archiver_t::no_result;
        }
        if (basekit2::find_files(source.result_dir, L"*.corr").empty()) {
            report(m_messenger, notify2::msg_error,
                   L"The folder " + source.result_dir.str() +
                       L" holds no result (no *.corr file).");
            return archiver_t::no_result;
        }
        const std::string root =
            (fs::path(dir).filename().empty() ? dir.parent_path().filename() : dir.filename())
                .generic_u8string();
        const fs::path target = fs::absolute(m_target.fs(), ec);
        remove_leftover_parts(target);

        std::vector<entry_t> found;
        found.push_back({{}, root + "/"});
        fs::recursive_directory_iterator it(dir, ec), end;
        for (; !ec && it != end; it.increment(ec)) {
            const fs::path& p = it->path();
            std::string name = root + "/" + p.lexically_relative(dir).generic_u8string();
            std::error_code fec;
            if (it->is_symlink(fec)) {
                // Never followed out of the result: what it points at is not
                // the user's to hand out.
                report(m_messenger, notify2::msg_warning,
                       L"The symbolic link " + basekit2::display(p) +
                           L" is not packed: links are not followed.");
                if (it->is_directory(fec))
                    it.disable_recursion_pending();
                continue;
            }
            if (it->is_directory(fec)) {
                found.push_back({{}, name + "/"});
            } else if (it->is_regular_file(fec) && fs::absolute(p, fec) != target &&
                       !is_part_of(p, target)) {
                entry_t e{p, std::move(name)};
                if (!file_info(p, e.size, e.mtime)) {
                    report(m_messenger, notify2::msg_error, L"Cannot read " + basekit2::display(p) + L".");
                    return archiver_t::read_failed;
                }
                found.push_back(std::move(e));
            }
        }
        if (ec) {
            report(m_messenger, notify2::msg_error,
                   L"Cannot read the result folder " + source.result_dir.str() + L": " +
                       utf8_to_wide(ec.message()) + L".");
            return archiver_t::read_failed;
        }
        std::sort(found.begin(), found.end(),
                  [](const entry_t& a, const entry_t& b) { return a.name < b.name; });

        if (flags & archiver_t::include_sources) {
            std::set<std::string> seen;
            bool dir_added = false;
            for (const auto& src : source.source_files) {
                const fs::path p = src.fs();
                entry_t e{p, root + "/sources/" + p.relative_path().generic_u8string()};
                if (!file_info(p, e.size, e.mtime)) {
                    report(m_messenger, notify2::msg_warning,
                           L"The source file " + src.str() +
                               L" was not found; it is not in the archive.");
                    continue;
                }
                if (!seen.insert(e.name).second)
                    continue;
                if (!dir_added)
                    found.push_back({{}, root + "/sources/"});
                dir_added = true;
                found.push_back(std::move(e));
            }
        }
        for (auto& e : found)
            if (!e.file.empty())
                e.store = looks_incompressible(e.file, e.size);
        m_entries = std::move(found);
        return archiver_t::success;
    }

    // Reports the bytes read so far; answers whether to stop.
    bool poll(double extra = 0)
    {
        const double done =
            static_cast<double>(m_bytes.load(std::memory_order_relaxed)) * (1 - assembly_share) +
            extra;
        if (m_progress && done > m_reported) {
            m_progress->progressed(done - m_reported);
            m_reported = done;
        }
        if (m_progress && m_progress->is_cancelled())
            m_cancel = true;
        return m_cancel;
    }

    static void on_progress(zip_t*, double, void* ud) { static_cast<packer_t*>(ud)->poll(); }
    static int on_cancel(zip_t*, void* ud) { return static_cast<packer_t*>(ud)->poll() ? 1 : 0; }

    archiver_t::error_code_t fail_from(zip_t* z, const std::wstring& what)
    {
        const int code = zip_error_code_zip(zip_get_error(z));
        if (code == ZIP_ER_CANCELLED || m_cancel)
            return archiver_t::cancelled;
        return fail(code, utf8_to_wide(zip_error_strerror(zip_get_error(z))), what);
    }

    archiver_t::error_code_t fail(int code, const std::wstring& reason, const std::wstring& what)
    {
        std::lock_guard lock(m_failure.mutex);
        if (!m_failure.file.empty()) {
            report(m_messenger, notify2::msg_error,
                   L"Cannot read " + basekit2::display(m_failure.file) + L": " + m_failure.reason + L".");
            return archiver_t::read_failed;
        }
        report(m_messenger, notify2::msg_error, what + L": " + reason + L".");
        return code == ZIP_ER_READ || code == ZIP_ER_OPEN ? archiver_t::read_failed
                                                          : archiver_t::write_failed;
    }

    archiver_t::error_code_t pack_direct()
    {
        zip_t* z = m_zip;
        std::vector<entry_t*> all;
        for (auto& e : m_entries)
            all.push_back(&e);
        std::wstring error;
        if (!add_entries(z, all, m_options.level, m_bytes, m_failure, false, error))
            return fail(0, error, L"Cannot write the archive " + m_target.str());
        zip_register_progress_callback_with_state(z, 0.0, &packer_t::on_progress, nullptr, this);
        zip_register_cancel_callback_with_state(z, &packer_t::on_cancel, nullptr, this);
        if (zip_close(z) != 0)
            return fail_from(z, L"Cannot write the archive " + m_target.str());
        m_closed = true;
        poll(m_total * assembly_share);
        return archiver_t::success;
    }

    struct shard_t
    {
        fs::path path;
        std::vector<entry_t*> entries;
        std::uint64_t bytes = 0;
        zip_t* reader = nullptr;
        std::wstring error;
        int code = 0;
        bool ok = false;
        bool cancelled = false;
    };

    // Shard archives live beside the target (the one folder known to be
    // writable) and are removed whatever happens.
    struct shard_files_t
    {
        std::vector<shard_t> shards;
        ~shard_files_t()
        {
            for (auto& s : shards) {
                if (s.reader)
                    zip_discard(s.reader);
                std::error_code ec;
                fs::remove(s.path, ec);
            }
        }
    };

    archiver_t::error_code_t pack_sharded(unsigned threads)
    {
        shard_files_t files;
        files.shards.resize(threads);
        const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
        for (unsigned i = 0; i < threads; ++i) {
            files.shards[i].path = m_target.fs();
            files.shards[i].path += ".part" + std::to_string(i) + "-" + std::to_string(stamp);
        }
        // Largest first onto the least loaded shard.
        std::vector<entry_t*> by_size;
        for (auto& e : m_entries)
            if (!e.file.empty())
                by_size.push_back(&e);
        std::stable_sort(by_size.begin(), by_size.end(),
                         [](const entry_t* a, const entry_t* b) { return a->size > b->size; });
        for (auto* e : by_size) {
            auto& s = *std::min_element(
                files.shards.begin(), files.shards.end(),
                [](const shard_t& a, const shard_t& b) { return a.bytes < b.bytes; });
            e->shard = static_cast<unsigned>(&s - files.shards.data());
            s.entries.push_back(e);
            s.bytes += e->size;
        }

        std::atomic<bool> stop{false};
        std::mutex mutex;
        std::condition_variable done_cv;
        unsigned running = threads;
        std::vector<std::thread> workers;
        for (auto& s : files.shards) {
            workers.emplace_back([&, shard = &s] {
                try {
                    compress_shard(*shard, stop);
                } catch (const std::exception& e) { // out of memory, a name it cannot take
                    shard->ok = false;
                    shard->error = platkit::strings::utf8_to_wide(e.what());
                    stop = true;
                }
                std::lock_guard lock(mutex);
                --running;
                done_cv.notify_all();
            });
        }
        {
            std::unique_lock lock(mutex);
            while (running > 0) {
                done_cv.wait_for(lock, std::chrono::milliseconds(50));
                lock.unlock();
                if (poll())
                    stop = true;
                lock.lock();
            }
        }
        for (auto& w : workers)
            w.join();
        if (m_cancel)
            return archiver_t::cancelled;
        for (auto& s : files.shards)
            if (!s.ok && !s.cancelled) // a shard stopped because another failed is not the cause
                return fail(s.code, s.error, L"Cannot write the archive " + m_target.str());

        return assemble(files.shards);
    }

    void compress_shard(shard_t& s, std::atomic<bool>& stop)
    {
        int code = 0;
        zip_t* z = zip_open(s.path.c_str(), ZIP_CREATE | ZIP_EXCL, &code);
        if (!z) {
            zip_error_t err;
            zip_error_init_with_code(&err, code);
            s.error = utf8_to_wide(zip_error_strerror(&err));
            zip_error_fini(&err);
            return;
        }
        if (!add_entries(z, s.entries, m_options.level, m_bytes, m_failure, true, s.error)) {
            zip_discard(z);
            return;
        }
        zip_register_cancel_callback_with_state(
            z, [](zip_t*, void* ud) { return static_cast<std::atomic<bool>*>(ud)->load() ? 1 : 0; },
            nullptr, &stop);
        if (zip_close(z) != 0) {
            s.code = zip_error_code_zip(zip_get_error(z));
            s.cancelled = s.code == ZIP_ER_CANCELLED;
            s.error = utf8_to_wide(zip_error_strerror(zip_get_error(z)));
            zip_discard(z);
            stop = true; // the others' work is lost anyway
            return;
        }
        s.ok = true;
    }

    struct assembly_progress_t
    {
        packer_t* self;
        static void on_progress(zip_t*, double fraction, void* ud)
        {
            auto* p = static_cast<assembly_progress_t*>(ud)->self;
            p->poll(p->m_total * assembly_share * fraction);
        }
    };

    archiver_t::error_code_t assemble(std::vector<shard_t>& shards)
    {
        zip_t* z = m_zip;
        for (auto& s : shards) {
            int code = 0;
            s.reader = zip_open(s.path.c_str(), ZIP_RDONLY, &code);
            if (!s.reader)
                return fail(code, L"a part written a moment ago cannot be read back",
                            L"Cannot write the archive " + m_target.str());
        }
        for (auto& e : m_entries) {
            zip_int64_t index = -1;
            if (e.file.empty()) {
                index = zip_dir_add(z, e.name.c_str(), ZIP_FL_ENC_UTF_8);
            } else {
                zip_source_t* src = zip_source_zip(
                    z, shards[e.shard].reader, static_cast<zip_uint64_t>(e.shard_index), 0, 0, -1);
                if (src) {
                    index = zip_file_add(z, e.name.c_str(), src, ZIP_FL_ENC_UTF_8);
                    if (index < 0)
                        zip_source_free(src);
                    // libzip would deflate stored data when copying it; keep it stored.
                    else if (e.store &&
                             zip_set_file_compression(z, static_cast<zip_uint64_t>(index),
                                                      ZIP_CM_STORE, 0) < 0)
                        index = -1;
                }
            }
            if (index < 0)
                return fail_from(z, L"Cannot write the archive " + m_target.str());
        }
        assembly_progress_t state{this};
        zip_register_progress_callback_with_state(z, 0.001, &assembly_progress_t::on_progress,
                                                  nullptr, &state);
        zip_register_cancel_callback_with_state(z, &packer_t::on_cancel, nullptr, this);
        if (zip_close(z) != 0)
            return fail_from(z, L"Cannot write the archive " + m_target.str());
        m_closed = true;
        poll(m_total * assembly_share);
        return archiver_t::success;
    }

    zip_t* m_zip;
    basekit2::path_t m_target;
    bool m_closed = false;
    notify2::IMessenger* m_messenger;
    notify2::IProgress* m_progress;
    pack_options_t m_options;
    std::vector<entry_t> m_entries;
    double m_total = 0;
    double m_reported = 0;
    bool m_cancel = false;
    std::atomic<std::uint64_t> m_bytes{0};
    failure_t m_failure;
};

} // namespace

namespace {

bool is_inside(const fs::path& file, const fs::path& dir)
{
    auto f = file.begin();
    for (auto d = dir.begin(); d != dir.end() && !d->empty(); ++d, ++f)
        if (f == file.end() || *f != *d)
            return false;
    return true;
}

} // namespace

std::vector<basekit2::path_t> archiver_t::get_source_files(engine_t& engine)
{
    std::vector<fs::path> dirs;
    for (const auto& d : engine.get_source_dirs())
        dirs.push_back(d.fs().lexically_normal());
    std::vector<basekit2::path_t> out;
    const auto problems = engine.get_problems();
    if (!problems)
        return out;
    std::set<std::string> seen; // frame sources repeat a lot: judge each once
    std::set<fs::path> added;
    for (const auto& problem : *problems)
        for (const auto& stack : problem.stacks)
            for (const auto& frame : stack.frames) {
                if (frame.source.empty() || !seen.insert(frame.source).second)
                    continue;
                const fs::path named = fs::u8path(frame.source);
                fs::path chosen;
                std::error_code ec;
                if (dirs.empty()) {
                    if (named.is_absolute() && fs::is_regular_file(named, ec))
                        chosen = named.lexically_normal();
                } else if (named.is_absolute()) {
                    const fs::path normal = named.lexically_normal();
                    for (const auto& d : dirs)
                        if (is_inside(normal, d))
                            chosen = normal;
                } else {
                    // Relative names are mostly the C library's own
                    // ("csu/../csu/libc-start.c"): only one found in a
                    // source folder is the result's.
                    // "../../etc/passwd" or a symlink out of the folder
                    // is not the result's source.
                    for (const auto& d : dirs) {
                        const fs::path candidate = (d / named).lexically_normal();
                        if (!is_inside(candidate, d) || !fs::is_regular_file(candidate, ec))
                            continue;
                        const fs::path real = fs::weakly_canonical(candidate, ec);
                        const fs::path real_dir = fs::weakly_canonical(d, ec);
                        if (!ec && is_inside(real, real_dir)) {
                            chosen = candidate;
                            break;
                        }
                    }
                }
                if (!chosen.empty() && added.insert(chosen).second)
                    out.emplace_back(chosen);
            }
    return out;
}

archiver_t::error_code_t archiver_t::pack(const basekit2::intrusive_pointer_t<engine_t>& engine,
                                          zipfile_impl_t& zip, unsigned flags,
                                          notify2::IMessenger* messenger,
                                          notify2::IProgress* progress)
{
    if (!engine || !engine->has_result()) {
        report(messenger, notify2::msg_error, L"There is no result to export.");
        zip.discard();
        return no_result;
    }
    pack_source_t source{engine->get_result_dir(), {}};
    if (flags & include_sources)
        source.source_files = get_source_files(*engine);
    return pack(source, zip, flags, messenger, progress);
}

std::wstring archiver_t::get_default_file_ext()
{
    return L"corrz";
}

archiver_t::error_code_t archiver_t::pack(const pack_source_t& source, zipfile_impl_t& zip,
                                          unsigned flags, notify2::IMessenger* messenger,
                                          notify2::IProgress* progress,
                                          const pack_options_t& options)
{
    packer_t packer(zip.handle(), zip.get_path(), messenger, progress, options);
    const error_code_t rc = packer.run(source, flags);
    if (packer.closed())
        zip.m_zip = nullptr; // written and freed by libzip
    else
        zip.discard();
    return rc;
}

} // namespace corr_engine
