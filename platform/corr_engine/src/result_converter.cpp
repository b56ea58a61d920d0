#include "corr_engine/result_converter.h"

#include "corr_engine/sanitizer_report_importer.h"
#include "corr_engine/valgrind_xml_importer.h"

#include <algorithm>
#include <fstream>
#include <mutex>

namespace corr_engine {
namespace {
std::mutex g_mutex;

// Holds g_mutex when called. The built-in importers go in once, before
// anything else is registered or cleared.
std::vector<std::shared_ptr<const result_importer_t>>& registry()
{
    static std::vector<std::shared_ptr<const result_importer_t>> importers{
        std::make_shared<valgrind_xml_importer_t>(),
        std::make_shared<sanitizer_report_importer_t>(L"txt"),
        std::make_shared<sanitizer_report_importer_t>(L"log"),
    };
    return importers;
}
} // namespace

namespace {
import_report_t cannot_open(const std::wstring& name)
{
    import_report_t report;
    report.ok = false;
    report.error = name + L": cannot open the file";
    return report;
}
} // namespace

import_report_t result_importer_t::import_file(const basekit2::path_t& file, const import_context_t&,
                                               const problem_sink_t& sink) const
{
    return import(file, sink);
}

import_report_t result_importer_t::scan_file(const basekit2::path_t& file, const std::wstring&) const
{
    return import_file(file, import_context_t{}, [](probstore3::problem_t&&) {});
}

import_report_t stream_importer_t::scan_stream(std::istream& in, const std::wstring& name) const
{
    return import_stream(in, name, import_context_t{}, [](probstore3::problem_t&&) {});
}

import_report_t stream_importer_t::import(const basekit2::path_t& file, const problem_sink_t& sink) const
{
    return import_file(file, import_context_t{}, sink);
}

import_report_t stream_importer_t::import_file(const basekit2::path_t& file, const import_context_t& context,
                                               const problem_sink_t& sink) const
{
    std::ifstream in(file.fs(), std::ios::binary);
    if (!in)
        return cannot_open(file.str());
    return import_stream(in, file.str(), context, sink);
}

import_report_t stream_importer_t::scan_file(const basekit2::path_t& file, const std::wstring& name) const
{
    std::ifstream in(file.fs(), std::ios::binary);
    if (!in)
        return cannot_open(name);
    return scan_stream(in, name);
}

result_converter_t::result_converter_t() = default;

std::vector<std::wstring> result_converter_t::get_supported_extensions() const
{
    std::vector<std::wstring> out;
    for (const auto& importer : importers()) {
        const std::wstring ext = importer->extension();
        if (std::find(out.begin(), out.end(), ext) == out.end())
            out.push_back(ext);
    }
    return out;
}

std::vector<std::shared_ptr<const result_importer_t>> result_converter_t::importers() const
{
    std::lock_guard lock(g_mutex);
    return registry();
}

std::shared_ptr<const result_importer_t>
result_converter_t::find_importer(const basekit2::path_t& file) const
{
    std::ifstream in(file.fs(), std::ios::binary);
    std::string window(head_size, '\0');
    in.read(window.data(), static_cast<std::streamsize>(window.size()));
    window.resize(static_cast<size_t>(in.gcount()));

    const std::wstring ext = file.extension();
    std::vector<std::shared_ptr<const result_importer_t>> later;
    for (const auto& importer : importers()) {
        if (importer->extension() != ext)
            continue;
        if (importer->can_import(window))
            return importer;
        if (importer->may_start_later())
            later.push_back(importer);
    }
    // Further windows of the file, each starting with the end of the one
    // before, so that a report header cut by a window's end is still seen.
    while (!later.empty() && in) {
        const size_t keep = std::min(window.size(), window_overlap);
        window.erase(0, window.size() - keep);
        window.resize(keep + head_size);
        in.read(window.data() + keep, static_cast<std::streamsize>(head_size));
        window.resize(keep + static_cast<size_t>(in.gcount()));
        if (window.size() == keep)
            break;
        for (const auto& importer : later)
            if (importer->can_import(window))
                return importer;
    }
    return nullptr;
}

void result_converter_t::register_importer(std::shared_ptr<const result_importer_t> importer)
{
    if (!importer)
        return;
    std::lock_guard lock(g_mutex);
    registry().push_back(std::move(importer));
}

void result_converter_t::clear_registry()
{
    std::lock_guard lock(g_mutex);
    registry().clear();
}

} // namespace corr_engine
