#include "startup.h"

#include "basekit2/config.h"
#include "corr_engine/result_converter.h"
#include "settings2/product_locations.h"
#include "settings2/resource_catalogs.h"
#include "wxkit1/tasks/scheduler.h"

#include <wx/filename.h>
#include <wx/stdpaths.h>

#include <memory>

namespace corrview {

std::vector<std::wstring> initialise_services(const product_paths_t& paths)
{
    // $CORR_RESOURCE_DIR, when set, wins over the folder found here.
    auto locations = std::make_shared<settings2::product_locations_t>(
        product_full_name, product_ascii_name, product_short_name, paths.resource_dir);
    const basekit2::path_t resource_dir = locations->getResourceDirectory();
    settings2::IProductLocations::set(locations);
    settings2::ensure_archive_handler();
    std::vector<std::wstring> problems;
    const auto report = settings2::load_resource_catalogs(resource_dir);
    for (const auto& error : report.errors())
        problems.push_back(error);

    basekit2::config_manager_t::set_default_config_dir(paths.default_config_dir);
    // Registers the Valgrind and sanitizer importers before the first import.
    corr_engine::result_converter_t converter;
    (void)converter;
    return problems;
}

void start_scheduler()
{
    wxkit1::tasks::Scheduler::Initialize();
}

void shutdown_services()
{
    wxkit1::tasks::Scheduler::Shutdown();
    settings2::IProductLocations::set(nullptr);
}

basekit2::path_t executable_dir()
{
    const wxString exe = wxStandardPaths::Get().GetExecutablePath();
    if (exe.empty())
        return {};
    return basekit2::path_t(wxFileName(exe).GetPath().ToStdWstring());
}

} // namespace corrview
