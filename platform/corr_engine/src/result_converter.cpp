#include "corr_engine/result_converter.h"

#include <algorithm>
#include <fstream>
#include <mutex>

namespace corr_engine {
namespace {
std::mutex g_mutex;
std::vector<std::shared_ptr<const result_importer_t>>& registry()
{
    static std::vector<std::shared_ptr<const result_importer_t>> importers;
    return importers;
}
} // namespace

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

std::shared_ptr<const result_importer_t> result_converter_t::find_importer(const basekit2::path_t& file) const
{
    std::string head(4096, '\0');
    {
        std::ifstream in(file.fs(), std::ios::binary);
        in.read(head.data(), static_cast<std::streamsize>(head.size()));
        head.resize(static_cast<size_t>(in.gcount()));
    }
    const std::wstring ext = file.extension();
    for (const auto& importer : importers())
        if (importer->extension() == ext && importer->can_import(head))
            return importer;
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
