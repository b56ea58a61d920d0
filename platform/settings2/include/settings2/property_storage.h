#pragma once
// Property storage: named bags of values that outlive the session (the
// launch settings keep "debugger_settings" here). The standard storage is one
// XML file, saved atomically on every put.
#include "basekit2/path.h"
#include "basekit2/threading/mutex.h"
#include "basekit2/variant_bag.h"

#include <map>
#include <memory>
#include <string>

namespace settings2 {

class IPropertyStorage
{
public:
    virtual ~IPropertyStorage() = default;

    // The bag stored under key into bag; false (bag untouched) when absent.
    virtual bool get(const std::wstring& key, basekit2::variant_bag_t& bag) const = 0;
    // Stores the bag under key, replacing what was there, and makes it
    // persistent. False when it could not be made persistent (the value is
    // still kept for this session).
    virtual bool put(const std::wstring& key, const basekit2::variant_bag_t& bag) = 0;
    virtual bool remove(const std::wstring& key) = 0;
};

// The storage in one XML file:
//   <properties version="1">
//     <property key="debugger_settings">
//       <value name="debugger_mode" type="string">off</value>
//     </property>
//   </properties>
// Value types (string, int, uint, double, bool, empty) survive the round trip.
class file_property_storage_t : public IPropertyStorage
{
public:
    // Reads the file if it exists. A malformed file is reported by
    // load_error(), the storage starts empty, and the bad file is moved aside
    // to "<file>.bad" on the first save rather than overwritten unseen.
    explicit file_property_storage_t(basekit2::path_t file);

    // <user config dir>/properties.xml
    static basekit2::path_t default_file();

    bool get(const std::wstring& key, basekit2::variant_bag_t& bag) const override;
    bool put(const std::wstring& key, const basekit2::variant_bag_t& bag) override;
    bool remove(const std::wstring& key) override;

    const basekit2::path_t& file() const { return m_file; }
    // Why the file could not be read at construction (empty when it was fine or absent).
    std::wstring load_error() const;
    // Why the last save failed (empty after a successful one).
    std::wstring last_error() const;

private:
    bool save_locked();

    basekit2::path_t m_file;
    mutable basekit2::threading::mutex_t m_mutex;
    std::map<std::wstring, basekit2::variant_bag_t> m_bags;
    std::wstring m_load_error;
    std::wstring m_save_error;
    bool m_move_bad_file_aside = false;
};

// The file of a project's property storage, in the project's folder.
inline constexpr const wchar_t* project_file_name = L"project.corrproj";

// The property storage of the project in project_dir (its launch settings,
// debugger settings and custom analysis types). The file is made on the
// first put; an empty file or one holding only the "corr-project 1" marker
// is a project without properties.
std::shared_ptr<file_property_storage_t> open_project_storage(const basekit2::path_t& project_dir);

} // namespace settings2
