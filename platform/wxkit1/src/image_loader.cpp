#include "wxkit1/image_loader.h"

#include "settings2/resource_catalogs.h"

#include <wx/filesys.h>
#include <wx/log.h>
#include <wx/module.h>
#include <wx/xml/xml.h>
#include <wx/xrc/xh_bmp.h>
#include <wx/xrc/xmlres.h>

#include <map>

namespace wxkit1 {
namespace {

// XRC errors are collected rather than logged one by one, so that the
// message we log names the file and the object.
class quiet_resource_t : public wxXmlResource
{
public:
    quiet_resource_t() : wxXmlResource(wxXRC_NO_SUBCLASSING) {}
    wxString last_error;

protected:
    void DoReportError(const wxString& file, const wxXmlNode*, const wxString& message) override
    {
        last_error = file + ": " + message;
    }
};

void ensure_image_handlers()
{
    if (!wxImage::FindHandler(wxBITMAP_TYPE_PNG))
        wxImage::AddHandler(new wxPNGHandler);
    if (!wxImage::FindHandler(wxBITMAP_TYPE_GIF))
        wxImage::AddHandler(new wxGIFHandler);
}

// Loaded image resources by file; GUI thread only. Emptied when wxWidgets
// shuts down, while the bitmaps can still be freed.
std::map<std::wstring, std::shared_ptr<wxXmlResource>>& cache()
{
    static std::map<std::wstring, std::shared_ptr<wxXmlResource>> resources;
    return resources;
}

class wxkit1_image_cache_module : public wxModule
{
public:
    bool OnInit() override { return true; }
    void OnExit() override { cache().clear(); }

private:
    wxDECLARE_DYNAMIC_CLASS(wxkit1_image_cache_module);
};

std::shared_ptr<wxXmlResource> open_resource(const std::wstring& file)
{
    if (const auto it = cache().find(file); it != cache().end())
        return it->second;

    settings2::ensure_archive_handler();
    ensure_image_handlers();
    auto resource = std::make_shared<quiet_resource_t>();
    resource->AddHandler(new wxBitmapXmlHandler);
    bool loaded = false;
    {
        wxLogNull quiet; // our message below names the file
        loaded = resource->Load(file);
    }
    if (!loaded) {
        wxLogError("Cannot read the image resource %s%s", file,
                   resource->last_error.empty() ? wxString() : ": " + resource->last_error);
        return nullptr;
    }
    cache()[file] = resource;
    return resource;
}

} // namespace

wxIMPLEMENT_DYNAMIC_CLASS(wxkit1_image_cache_module, wxModule);

image_loader_t::image_loader_t(const std::wstring& resource_file)
    : m_file(resource_file), m_resource(open_resource(resource_file))
{
}

wxBitmap image_loader_t::load_bitmap(const std::wstring& name) const
{
    if (!m_resource)
        return wxBitmap();
    wxBitmap bitmap;
    if (m_resource->GetResourceNode(name)) {
        wxLogNull quiet;
        bitmap = m_resource->LoadBitmap(name);
    }
    if (!bitmap.IsOk())
        wxLogError("Bitmap \"%s\" is missing from %s", name, m_file);
    return bitmap;
}

wxImage image_loader_t::load_image(const std::wstring& name) const
{
    const wxBitmap bitmap = load_bitmap(name);
    return bitmap.IsOk() ? bitmap.ConvertToImage() : wxImage();
}

wxAnimation image_loader_t::load_animation(const std::wstring& name) const
{
    wxAnimation animation;
    const wxXmlNode* node = m_resource ? m_resource->GetResourceNode(name) : nullptr;
    if (node) {
        // The node's text is the image file, relative to the resource file.
        const wxString relative = node->GetNodeContent().Trim().Trim(false);
        wxString base = m_file;
        const int slash = base.Find('/', true);
        const int colon = base.Find(':', true);
        base = base.Left(std::max(slash, colon) + 1);
        wxFileSystem fs;
        std::unique_ptr<wxFSFile> file(fs.OpenFile(base + relative, wxFS_READ | wxFS_SEEKABLE));
        wxLogNull quiet;
        if (file && file->GetStream())
            animation.Load(*file->GetStream(), wxANIMATION_TYPE_ANY);
    }
    if (!animation.IsOk())
        wxLogError("Animation \"%s\" is missing from %s", name, m_file);
    return animation;
}

} // namespace wxkit1
