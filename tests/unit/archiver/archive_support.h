#pragma once
// Helpers of the archiver tests: files, archives read back with libzip, and
// the messages a pack sends.
#include "corr_engine/archiver.h"

#include <gtest/gtest.h>
#include <zip.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace archiver_test {

namespace fs = std::filesystem;

inline std::string read_file(const fs::path& p)
{
    std::ifstream in(p, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void write_file(const fs::path& p, const std::string& data)
{
    fs::create_directories(p.parent_path());
    std::ofstream(p, std::ios::binary) << data;
}

struct archive_entry
{
    std::string data;
    zip_uint16_t method = 0;
};

// Name -> content of every entry; folders map to an empty text.
inline std::map<std::string, archive_entry> read_archive(const fs::path& file)
{
    std::map<std::string, archive_entry> out;
    int code = 0;
    zip_t* z = zip_open(file.c_str(), ZIP_RDONLY | ZIP_CHECKCONS, &code);
    EXPECT_NE(nullptr, z) << "cannot open " << file << ", libzip error " << code;
    if (!z)
        return out;
    for (zip_int64_t i = 0; i < zip_get_num_entries(z, 0); ++i) {
        zip_stat_t st;
        zip_stat_index(z, static_cast<zip_uint64_t>(i), 0, &st);
        archive_entry e;
        e.method = st.comp_method;
        e.data.resize(st.size);
        zip_file_t* f = zip_fopen_index(z, static_cast<zip_uint64_t>(i), 0);
        EXPECT_NE(nullptr, f);
        if (f) {
            EXPECT_EQ(static_cast<zip_int64_t>(st.size), zip_fread(f, e.data.data(), st.size));
            zip_fclose(f);
        }
        out[st.name] = std::move(e);
    }
    zip_discard(z);
    return out;
}

struct collected_messages final : notify2::IMessenger
{
    std::vector<std::pair<std::uint32_t, std::wstring>> list;
    void message(std::uint32_t type, const wchar_t* text) override
    {
        list.emplace_back(type, text ? text : L"");
    }
};

// A progress bar that records what it was told, and asks to stop when told
// to or once a share of the work is done.
struct recording_progress final : notify2::IProgress
{
    double total = 0, position = 0;
    double cancel_at = 2; // share of the total
    bool cancelled = false;
    int reports = 0, firsts = 0, seconds = 0;
    bool monotonic = true;
    std::vector<std::wstring> texts;

    void begin(const std::wstring& text, double t) override
    {
        texts.push_back(text);
        total = t;
        position = 0;
    }
    void progressed(double amount) override
    {
        monotonic = monotonic && amount >= 0;
        position += amount;
        ++reports;
    }
    void set_status(const std::wstring& text) override { texts.push_back(text); }
    void raise_first() override { ++firsts; }
    void raise_second() override { ++seconds; }
    double get_total() const override { return total; }
    bool is_cancelled() const override
    {
        return cancelled || (total > 0 && position >= cancel_at * total);
    }
};

} // namespace archiver_test
