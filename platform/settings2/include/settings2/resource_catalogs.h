#pragma once
// Loading the message catalogues of the resource archives (*.dat).
//
// An archive is a zip file holding
//   manifest.txt   "set=<name>": the resource set its catalogue is registered under
//   messages.mo    the compiled catalogue (gettext MO; msgid = key, msgstr = text)
//   *.xrc, images  layouts and bitmaps, read by the dialogs themselves
// The catalogue is read through wxFileSystem's zip handler
// ("<dir>/dialogs2.dat#zip:messages.mo") and registered with
// registerMessageCatalog. Works without a wxApp: wxBase is initialised for
// the duration of the call when nothing else has done it.
#include "basekit2/path.h"

#include <string>
#include <vector>

namespace settings2 {

// The outcome for one archive (or, with an empty set, for the folder).
struct resource_load_entry_t
{
    basekit2::path_t archive;
    std::wstring set;   // resource set registered; empty when it failed early
    std::wstring error; // empty on success; otherwise names the file and the reason
    bool ok() const { return error.empty(); }
};

struct resource_load_report_t
{
    std::vector<resource_load_entry_t> entries; // archives in name order

    // True when at least one catalogue loaded and nothing failed.
    bool ok() const;
    std::vector<std::wstring> loaded_sets() const;
    std::vector<std::wstring> errors() const;
    // One line per failure, for a log or a message box.
    std::wstring error_text() const;
};

// Opens every *.dat in dir and registers each catalogue under its set name.
// Never throws; a missing folder, an unreadable or corrupt archive, a missing
// manifest or catalogue are reported, and the other archives still load.
resource_load_report_t load_resource_catalogs(const basekit2::path_t& dir);

// The same for one archive.
resource_load_entry_t load_resource_catalog(const basekit2::path_t& archive);

// Registers wxFileSystem's zip handler unless one is there, so that
// "<file>.dat#zip:<entry>" can be opened (layouts, images, catalogues).
void ensure_archive_handler();

} // namespace settings2
