#pragma once
// What the viewer sets up before its first window and takes down after the
// last: the product-locations service (names, resource folder), the message
// catalogues, the default-configuration folder, the analyser importers and
// the GUI task scheduler.
#include "../host/locations.h"

#include <string>
#include <vector>

namespace corrview {

// Product names the library's texts use ({prod_name}, ...).
inline constexpr const wchar_t* product_full_name = L"Correctness Analyzer";
inline constexpr const wchar_t* product_ascii_name = L"corr-analyzer";
inline constexpr const wchar_t* product_short_name = L"CorrA";

// Everything but the scheduler, which needs a running wxApp. Returns what
// could not be loaded (missing or broken resource archives), one line each;
// the viewer still starts and shows the fall-back texts.
std::vector<std::wstring> initialise_services(const product_paths_t& paths);
// Starts the task scheduler (GUI thread, after the wxApp has initialised).
void start_scheduler();
// Stops the scheduler and removes the services.
void shutdown_services();

// The folder of the running executable (empty when unknown).
basekit2::path_t executable_dir();

} // namespace corrview
