#pragma once
// The one in-cell combo box of an editable grid model. The model owns it
// (not the window it is shown in), fills it when the grid asks for an
// editor, and reads it back when the edit ends.
#include "corr_dialogs2/export.h"

#include "uicore7/sys_window.h"
#include "uiframe7/combo_box.h"

#include <memory>

namespace corr_dialogs2 {

class CORR_DIALOGS2_API combo_model_t
{
public:
    combo_model_t();
    // The combo box belongs to one model: a copy starts without one, and
    // assignment keeps the combo box the target already has.
    combo_model_t(const combo_model_t& other);
    combo_model_t& operator=(const combo_model_t& other);
    virtual ~combo_model_t();

    // Drops the combo box held before, makes a new one and binds it to
    // window (a grid's window, once it exists). A model that listens to
    // combo-box events (uiframe7::IComboBoxEvents) is added as a listener.
    virtual void init(uicore7::ISysWindow* window);

    // Ends an open edit keeping its value, so that it reaches the rule
    // before a dialog reads the rules back. Nothing without an open edit.
    void save_editors_data();

protected:
    uiframe7::CComboBox* get_combobox() const { return m_combo.get(); }
    // Detaches the combo box from its window before destroying it, so the
    // window never keeps a dangling child.
    void delete_combobox();

private:
    std::unique_ptr<uiframe7::CComboBox> m_combo;
};

} // namespace corr_dialogs2
