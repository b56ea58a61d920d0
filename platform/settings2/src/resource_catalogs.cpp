#include "settings2/resource_catalogs.h"

#include "settings2/catalog.h"

#include <wx/filesys.h>
#include <wx/fs_arc.h>
#include <wx/app.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/translation.h>
#include <wx/wfstream.h>
#include <wx/zipstrm.h>

#include <algorithm>
#include <memory>
#include <sstream>

namespace settings2 {
namespace {

constexpr const wchar_t* manifest_entry = L"manifest.txt";
constexpr const wchar_t* catalog_entry = L"messages.mo";

// Hands the compiled catalogue of one archive to wxTranslations, once.
class archive_loader_t : public wxTranslationsLoader
{
public:
    static constexpr const wchar_t* language = L"keys";

    explicit archive_loader_t(const std::string& data) : m_data(data.size())
    {
        std::copy(data.begin(), data.end(), m_data.data());
    }
    wxMsgCatalog* LoadCatalog(const wxString& domain, const wxString&) override
    {
        if (m_used)
            return nullptr;
        m_used = true;
        return wxMsgCatalog::CreateFromData(m_data, domain);
    }
    wxArrayString GetAvailableTranslations(const wxString&) const override
    {
        wxArrayString languages;
        languages.push_back(language);
        return languages;
    }

private:
    wxCharBuffer m_data;
    bool m_used = false;
};

// A catalogue compiled by msgfmt, as wxWidgets reads it. A private
// wxTranslations owns the wxMsgCatalog: wxWidgets gives no other way to
// delete one.
class mo_catalog_t : public platkit::i18n::catalog_t
{
public:
    // Null when the data is not a valid compiled catalogue.
    static std::shared_ptr<mo_catalog_t> create(const std::wstring& name, const std::string& data)
    {
        auto translations = std::make_unique<wxTranslations>();
        translations->SetLoader(new archive_loader_t(data));
        translations->SetLanguage(archive_loader_t::language);
        if (!translations->AddCatalog(name) || !translations->IsLoaded(name))
            return nullptr;
        return std::shared_ptr<mo_catalog_t>(new mo_catalog_t(name, std::move(translations)));
    }
    std::wstring name() const override { return m_name; }
    bool has_message(const std::wstring& key) const override { return find(key) != nullptr; }
    platkit::i18n::message_t message(const std::wstring& key) const override
    {
        const wxString* text = find(key);
        return platkit::i18n::message_t(text ? text->ToStdWstring() : key);
    }

private:
    mo_catalog_t(std::wstring name, std::unique_ptr<wxTranslations> translations)
        : m_name(std::move(name)), m_domain(m_name), m_translations(std::move(translations))
    {
    }
    const wxString* find(const std::wstring& key) const
    {
        return m_translations->GetTranslatedString(wxString(key), m_domain);
    }

    std::wstring m_name;
    wxString m_domain;
    std::unique_ptr<wxTranslations> m_translations;
};

enum class read_result { ok, missing, damaged };

read_result read_entry(const basekit2::path_t& archive, const std::wstring& entry, std::string& out)
{
    wxFileSystem fs;
    std::unique_ptr<wxFSFile> file(fs.OpenFile(archive.str() + L"#zip:" + entry, wxFS_READ));
    if (!file || !file->GetStream())
        return read_result::missing;
    wxInputStream& in = *file->GetStream();
    char buffer[8192];
    for (;;) {
        in.Read(buffer, sizeof buffer);
        const size_t n = in.LastRead();
        out.append(buffer, n);
        if (n == 0 || !in.IsOk())
            break;
    }
    return in.GetLastError() == wxSTREAM_EOF || in.GetLastError() == wxSTREAM_NO_ERROR
               ? read_result::ok
               : read_result::damaged;
}

bool is_zip_archive(const basekit2::path_t& archive)
{
    wxFFileInputStream file(archive.str());
    if (!file.IsOk())
        return false;
    wxZipInputStream zip(file);
    std::unique_ptr<wxZipEntry> first(zip.GetNextEntry());
    return zip.IsOk() && first;
}

// "set=dialogs" names the resource set; each "also=<name>" registers the same
// catalogue under a further set (the launch-dialog pages look theirs up as
// "launchdlg_qm"). Blank lines and "#" comments are allowed.
struct manifest_t
{
    std::wstring set;
    std::vector<std::wstring> also;
};

manifest_t parse_manifest(const std::string& text)
{
    manifest_t manifest;
    std::istringstream in(text);
    std::string line;
    auto trim = [](const std::string& s) {
        const auto b = s.find_first_not_of(" \t");
        const auto e = s.find_last_not_of(" \t");
        return b == std::string::npos ? std::string() : s.substr(b, e - b + 1);
    };
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        const auto eq = line.find('=');
        if (line.empty() || line[0] == '#' || eq == std::string::npos)
            continue;
        const std::string key = trim(line.substr(0, eq));
        const std::wstring value = wxString::FromUTF8(trim(line.substr(eq + 1))).ToStdWstring();
        if (key == "set" && manifest.set.empty())
            manifest.set = value;
        else if (key == "also" && !value.empty())
            manifest.also.push_back(value);
    }
    return manifest;
}

resource_load_entry_t load_one(const basekit2::path_t& archive)
{
    resource_load_entry_t entry{archive, {}, {}};
    auto fail = [&](const std::wstring& why) {
        entry.error = archive.str() + L": " + why;
        return entry;
    };
    if (!archive.is_regular_file())
        return fail(L"the resource archive does not exist");
    if (!is_zip_archive(archive))
        return fail(L"not a readable zip archive (damaged or not a resource archive)");

    std::string manifest;
    switch (read_entry(archive, manifest_entry, manifest)) {
    case read_result::missing:
        return fail(L"no manifest.txt naming its resource set");
    case read_result::damaged:
        return fail(L"manifest.txt cannot be read (the archive is damaged)");
    case read_result::ok:
        break;
    }
    const manifest_t parsed = parse_manifest(manifest);
    const std::wstring& set = parsed.set;
    if (set.empty())
        return fail(L"manifest.txt has no \"set=<name>\" line");
    entry.set = set;

    std::string data;
    switch (read_entry(archive, catalog_entry, data)) {
    case read_result::missing:
        return fail(L"no messages.mo (compiled catalogue of set '" + set + L"')");
    case read_result::damaged:
        return fail(L"messages.mo cannot be read (the archive is damaged)");
    case read_result::ok:
        break;
    }
    auto catalog = mo_catalog_t::create(set, data);
    if (!catalog)
        return fail(L"messages.mo is not a valid compiled catalogue");
    for (const auto& alias : parsed.also)
        registerMessageCatalog(alias, catalog);
    registerMessageCatalog(set, std::move(catalog));
    return entry;
}

// wxBase for the duration of a load when nothing runs it yet (a unit test, a
// command-line tool). wxInitialize() does not count an application started
// by wxEntryStart(), so an existing application is left alone explicitly.
class wx_base_scope
{
public:
    wx_base_scope() : m_owned(!wxAppConsole::GetInstance()), m_ok(!m_owned || wxInitialize()) {}
    ~wx_base_scope()
    {
        if (m_owned && m_ok)
            wxUninitialize();
    }
    wx_base_scope(const wx_base_scope&) = delete;
    wx_base_scope& operator=(const wx_base_scope&) = delete;
    bool ok() const { return m_ok; }

private:
    bool m_owned;
    bool m_ok;
};

} // namespace

void ensure_archive_handler()
{
    // The handler list lives in wxFileSystem and is emptied when wxBase shuts
    // down, so ask rather than remember.
    if (!wxFileSystem::HasHandlerForPath(L"probe.dat#zip:probe"))
        wxFileSystem::AddHandler(new wxArchiveFSHandler);
}

bool resource_load_report_t::ok() const
{
    return !entries.empty() &&
           std::all_of(entries.begin(), entries.end(), [](const auto& e) { return e.ok(); });
}

std::vector<std::wstring> resource_load_report_t::loaded_sets() const
{
    std::vector<std::wstring> sets;
    for (const auto& e : entries)
        if (e.ok())
            sets.push_back(e.set);
    return sets;
}

std::vector<std::wstring> resource_load_report_t::errors() const
{
    std::vector<std::wstring> out;
    for (const auto& e : entries)
        if (!e.ok())
            out.push_back(e.error);
    return out;
}

std::wstring resource_load_report_t::error_text() const
{
    std::wstring text;
    for (const auto& e : errors())
        text += (text.empty() ? L"" : L"\n") + e;
    return text;
}

resource_load_entry_t load_resource_catalog(const basekit2::path_t& archive)
{
    const wx_base_scope wx;
    if (!wx.ok())
        return {archive, {}, archive.str() + L": wxWidgets could not be initialised"};
    wxLogNull quiet; // failures are reported to the caller, not logged twice
    ensure_archive_handler();
    return load_one(archive);
}

resource_load_report_t load_resource_catalogs(const basekit2::path_t& dir)
{
    resource_load_report_t report;
    const wx_base_scope wx; // once for all archives rather than once per archive
    if (!dir.is_directory()) {
        report.entries.push_back({dir, {}, dir.str() + L": the resource folder does not exist"});
        return report;
    }
    const std::vector<basekit2::path_t> archives = basekit2::find_files(dir, L"*.dat");
    if (archives.empty()) {
        report.entries.push_back({dir, {}, dir.str() + L": no resource archives (*.dat) in the folder"});
        return report;
    }
    for (const auto& archive : archives)
        report.entries.push_back(load_resource_catalog(archive));
    return report;
}

} // namespace settings2
