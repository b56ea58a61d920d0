#pragma once
// A grid control in a placeholder panel of a dialog layout, and the wiring
// of a grid model into it in the order every dialog of the library uses.
#include "corr_dialogs2/grid_framework.h"

#include "gridview8/gridview8.h"
#include "uiframe7/base_control.h"

#include <wx/bitmap.h>

#include <type_traits>
#include <utility>
#include <vector>

namespace corr_dialogs2::detail {

// Whether a model has a check column (check_column_t).
template <class M, class = void>
struct has_check_column : std::false_type
{
};
template <class M>
struct has_check_column<M, std::void_t<decltype(std::declval<M&>().set_check_image(1))>> : std::true_type
{
};

// The images of the check columns: position 0 unchecked, 1 checked, drawn
// by the native renderer so that they look like the platform's check boxes.
std::vector<wxBitmap> make_check_images(wxWindow* window);

class grid_host_t
{
public:
    // Creates the control and the grid filling placeholder (which may be null:
    // then there is no grid).
    void create(wxWindow* placeholder);
    // Drops the models from the grid; call before the models go away.
    void detach();

    uiframe7::CBaseControl* control() const { return m_control; }
    gridview8::CGrid* grid() const { return m_grid; }
    uicore7::ISysWindow* sys_window() const;

    // The wiring order: header, model and drawing model, the model as the
    // first event handler (its buttons and check cells see presses), the
    // editing model and the check images, resizing, header style, tool-tips.
    template <class Model>
    void wire(Model& model, header_vis_model_t& header, gridview8::IEditingModel* editing,
              gridview8::IResizingModel* resizing, gridview8::ITooltipModel* tooltips)
    {
        if (!m_grid)
            return;
        model.init_header_vis_model(header);
        m_grid->SetModel(&model, &header, true);
        m_grid->SetDrawingModel(&model);
        m_grid->GetViewer()->AddEventHandler(&model);
        if (editing)
            m_grid->SetEditingModel(editing);
        if constexpr (has_check_column<Model>::value) {
            m_grid->SetImageList(make_check_images(m_control));
            model.set_check_image(1);
            model.set_uncheck_image(0);
        }
        m_grid->SetResizingModel(resizing);
        m_grid->GetHeader()->SetStyle(1);
        m_grid->SetTooltipModel(tooltips);
    }

private:
    uiframe7::CBaseControl* m_control = nullptr;
    gridview8::CGrid* m_grid = nullptr;
};

} // namespace corr_dialogs2::detail
