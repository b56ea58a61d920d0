#pragma once
// Where the product lives and what it is called. The host initialises the
// service once at start-up; until then get() returns null.
#include "basekit2/path.h"
#include "platkit/generic/argument.h"

#include <memory>
#include <string>

namespace settings2 {

class IProductLocations
{
public:
    virtual ~IProductLocations() = default;

    // Product-name strings by number: 0 the full name, 1 the ASCII name,
    // 5 the short name. Other numbers give an empty string.
    virtual std::wstring getProductName(int which) const = 0;
    // Folder holding the resource archives (dialogs2.dat, shareddlg3.dat).
    virtual basekit2::path_t getResourceDirectory() const = 0;

    static std::shared_ptr<IProductLocations> get();
    // Installs the service (null removes it).
    static void set(std::shared_ptr<IProductLocations> service);
};

// The standard service: names given by the host; the resource directory is
// $CORR_RESOURCE_DIR when set, else the given default.
class product_locations_t : public IProductLocations
{
public:
    product_locations_t(std::wstring full_name, std::wstring ascii_name, std::wstring short_name,
                        basekit2::path_t default_resource_dir);
    std::wstring getProductName(int which) const override;
    basekit2::path_t getResourceDirectory() const override;

private:
    std::wstring m_full, m_ascii, m_short;
    basekit2::path_t m_resource_dir;
};

// The product names as message arguments, read from the installed service
// now: "prod_name" (name 0), "product_ascii_name" (1), "prod_short_name" (5).
// Empty strings when no service is installed.
platkit::generic::varg_list product_name_arguments();

} // namespace settings2
