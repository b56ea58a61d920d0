#include "corr_engine/result_manifest.h"

#include "basekit2/file_io.h"
#include "basekit2/path.h"

#include "platkit/strings/convert.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <ctime>
#include <fstream>
#include <sstream>

namespace corr_engine {
namespace {

using platkit::strings::utf8_to_wide;
using platkit::strings::wide_to_utf8;

constexpr const char* magic = "corr-result";

// Values are single lines: backslash, newline, carriage return and tab are
// written as \\, \n, \r and \t.
std::string escape(const std::string& value)
{
    std::string out;
    out.reserve(value.size());
    for (char c : value) {
        switch (c) {
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            out.push_back(c);
        }
    }
    return out;
}

std::string unescape(const std::string& value)
{
    std::string out;
    out.reserve(value.size());
    for (size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            out.push_back(value[i]);
            continue;
        }
        switch (value[++i]) {
        case 'n':
            out.push_back('\n');
            break;
        case 'r':
            out.push_back('\r');
            break;
        case 't':
            out.push_back('\t');
            break;
        default:
            out.push_back(value[i]);
        }
    }
    return out;
}

void put(std::ostringstream& out, const char* key, const std::wstring& value)
{
    out << key << " = " << escape(wide_to_utf8(value)) << "\n";
}

std::string trim(const std::string& s)
{
    const auto b = s.find_first_not_of(" \t");
    if (b == std::string::npos)
        return {};
    const auto e = s.find_last_not_of(" \t");
    return s.substr(b, e - b + 1);
}

} // namespace

std::wstring analysis_type_of(const std::vector<std::wstring>& tools)
{
    std::wstring type;
    for (const auto& tool : tools) {
        std::wstring t;
        if (tool == L"memcheck" || tool == L"asan" || tool == L"lsan" || tool == L"msan")
            t = L"memory";
        else if (tool == L"helgrind" || tool == L"drd" || tool == L"tsan")
            t = L"threading";
        else if (tool == L"ubsan")
            t = L"undefined-behavior";
        else
            t = L"mixed";
        if (type.empty())
            type = t;
        else if (type != t)
            return L"mixed";
    }
    return type;
}

std::wstring utc_timestamp()
{
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm tm{};
    gmtime_r(&now, &tm);
    char buf[32];
    std::strftime(buf, sizeof buf, "%Y-%m-%dT%H:%M:%SZ", &tm);
    return utf8_to_wide(buf);
}

void result_manifest_t::update_tools()
{
    std::vector<std::wstring> tools;
    for (const auto& file : data_files) {
        std::wstring list = file.tool;
        size_t pos = 0;
        while (pos <= list.size()) {
            auto comma = list.find(L',', pos);
            if (comma == std::wstring::npos)
                comma = list.size();
            std::wstring one = list.substr(pos, comma - pos);
            one.erase(0, one.find_first_not_of(L' '));
            one.erase(one.find_last_not_of(L' ') + 1);
            if (!one.empty() && std::find(tools.begin(), tools.end(), one) == tools.end())
                tools.push_back(one);
            pos = comma + 1;
        }
    }
    tool.clear();
    for (const auto& t : tools)
        tool += (tool.empty() ? L"" : L", ") + t;
    analysis_type = analysis_type_of(tools);
}

std::string result_manifest_t::to_text() const
{
    std::ostringstream out;
    out << magic << " " << current_version << "\n";
    put(out, "name", name);
    put(out, "analysis_type", analysis_type);
    put(out, "tool", tool);
    put(out, "command", command);
    put(out, "created", created);
    for (const auto& dir : source_dirs)
        out << "source_dir = " << escape(dir.native()) << "\n"; // a folder's bytes, exactly
    for (const auto& file : data_files)
        out << "data = " << escape(wide_to_utf8(file.name)) << " | "
            << escape(wide_to_utf8(file.tool)) << " | " << file.problems << "\n";
    return out.str();
}

bool result_manifest_t::from_text(const std::string& text, const std::wstring& file_name,
                                  std::wstring& error)
{
    result_manifest_t loaded;
    std::istringstream in(text);
    std::string line;
    size_t line_no = 0;
    bool seen_magic = false;
    auto fail = [&](const std::wstring& reason) {
        error = file_name + L":" + std::to_wstring(line_no) + L": " + reason;
        return false;
    };
    while (std::getline(in, line)) {
        ++line_no;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        const std::string t = trim(line);
        if (t.empty() || t[0] == '#')
            continue;
        if (!seen_magic) {
            const std::string prefix = std::string(magic) + " ";
            int version = 0;
            const char* first = t.data() + prefix.size();
            const char* last = t.data() + t.size();
            if (t.compare(0, prefix.size(), prefix) != 0 ||
                std::from_chars(first, last, version).ptr != last)
                return fail(
                    L"not a result marker file (the first line must be \"corr-result <version>\")");
            if (version < 1 || version > current_version)
                return fail(L"result format version " + std::to_wstring(version) +
                            L" is not supported (this program reads version " +
                            std::to_wstring(current_version) + L")");
            seen_magic = true;
            continue;
        }
        // "key = value": the value keeps its own spaces, only the one after '=' goes.
        const auto eq = line.find('=');
        if (eq == std::string::npos)
            return fail(L"expected \"key = value\"");
        const std::string key = trim(line.substr(0, eq));
        std::string raw = line.substr(eq + 1);
        if (!raw.empty() && raw[0] == ' ')
            raw.erase(0, 1);
        const std::string value = unescape(raw);
        const std::wstring wide = utf8_to_wide(value);
        if (key == "name")
            loaded.name = wide;
        else if (key == "analysis_type")
            loaded.analysis_type = wide;
        else if (key == "tool")
            loaded.tool = wide;
        else if (key == "command")
            loaded.command = wide;
        else if (key == "created")
            loaded.created = wide;
        else if (key == "source_dir")
            loaded.source_dirs.push_back(basekit2::path_t::from_utf8(value));
        else if (key == "data") {
            const auto second = value.rfind(" | ");
            const auto first = second == std::string::npos || second == 0
                                   ? std::string::npos
                                   : value.rfind(" | ", second - 1);
            data_file_t file;
            const std::string count =
                second == std::string::npos ? std::string() : trim(value.substr(second + 3));
            if (first == std::string::npos ||
                std::from_chars(count.data(), count.data() + count.size(), file.problems).ptr !=
                    count.data() + count.size() ||
                count.empty())
                return fail(L"expected \"data = <file> | <tool> | <problems>\"");
            file.name = utf8_to_wide(value.substr(0, first));
            file.tool = utf8_to_wide(value.substr(first + 3, second - first - 3));
            if (file.name.empty() || file.name.find(L'/') != std::wstring::npos ||
                file.name == L"." || file.name == L"..")
                return fail(L"a data file must be a plain file name inside data/");
            loaded.data_files.push_back(std::move(file));
        }
        // Other keys come from newer versions of the same format: kept out, not fatal.
    }
    if (!seen_magic) {
        line_no = 1;
        return fail(L"not a result marker file (the file is empty)");
    }
    *this = std::move(loaded);
    return true;
}

bool result_manifest_t::read(const basekit2::path_t& file, std::wstring& error)
{
    std::ifstream in(file.fs(), std::ios::binary);
    if (!in) {
        error = file.str() + L": cannot open the marker file";
        return false;
    }
    std::ostringstream text;
    text << in.rdbuf();
    return from_text(text.str(), file.str(), error);
}

bool result_manifest_t::write(const basekit2::path_t& file, std::wstring& error) const
{
    // Like a suppression file: a unique temporary name beside it, flushed to
    // disk, then renamed over it, keeping its mode; two writers never share
    // a temporary file.
    std::wstring why;
    if (basekit2::write_file_atomically(file, to_text(), why) != basekit2::write_error::none) {
        error = file.display() + L": cannot write the marker file: " + why;
        return false;
    }
    return true;
}

} // namespace corr_engine
