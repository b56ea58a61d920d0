#pragma once
// Bitmaps of an XRC image resource, usually
// "<resource dir>/dialogs2.dat#zip:dialogs_images.xrc".
#include <wx/animate.h>
#include <wx/bitmap.h>
#include <wx/image.h>

#include <memory>
#include <string>

class wxXmlResource;

namespace wxkit1 {

class image_loader_t
{
public:
    // Loads the resource file once per process; later loaders of the same
    // file share it. A file that cannot be loaded is logged (naming it) and
    // every bitmap of it is then invalid.
    explicit image_loader_t(const std::wstring& resource_file);

    const std::wstring& resource_file() const { return m_file; }
    bool is_loaded() const { return m_resource != nullptr; }

    // The bitmap of that name; an invalid bitmap, and a logged message naming
    // the file and the bitmap, when there is none.
    wxBitmap load_bitmap(const std::wstring& name) const;
    wxImage load_image(const std::wstring& name) const;
    // The animation (a GIF) of that name, for a wxAnimationCtrl; invalid,
    // and logged, when there is none.
    wxAnimation load_animation(const std::wstring& name) const;

private:
    std::wstring m_file;
    std::shared_ptr<wxXmlResource> m_resource;
};

} // namespace wxkit1
