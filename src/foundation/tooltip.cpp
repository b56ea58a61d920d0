#include "corr_dialogs2/ui_utils.h"

#include "wxkit1/text.h"
#include "wxkit1/tooltip.h"

#include <climits>

namespace corr_dialogs2 {

void set_tooltip(const std::wstring& text, wxWindow* window)
{
    try {
        int width = 0; // not needed: the popup sizes itself to the text
        const std::wstring wrapped = wxkit1::wrap_text(text, 600, window, width, UINT_MAX, nullptr);
        if (wxkit1::wxCustomTooltip* tooltip = wxkit1::SetTooltip(window, wrapped, -1, true))
            tooltip->SetHideDelay(60000);
    } catch (...) {
        // A tool-tip never fails a dialog.
    }
}

} // namespace corr_dialogs2
