#include "corr_dialogs2/combo_model.h"

namespace corr_dialogs2 {

combo_model_t::combo_model_t() = default;

combo_model_t::combo_model_t(const combo_model_t&) {}

combo_model_t& combo_model_t::operator=(const combo_model_t&)
{
    return *this;
}

combo_model_t::~combo_model_t()
{
    delete_combobox();
}

void combo_model_t::init(uicore7::ISysWindow* window)
{
    delete_combobox();
    m_combo = std::make_unique<uiframe7::CComboBox>(uicore7::CreateDefSenderList());
    m_combo->Init(window, uiframe7::CComboBox::cbsDropDownList);
    if (auto* listener = dynamic_cast<uiframe7::IComboBoxEvents*>(this))
        m_combo->AddListener(listener);
}

void combo_model_t::save_editors_data()
{
    if (m_combo && m_combo->IsEditing())
        m_combo->EndEdit(true);
}

void combo_model_t::delete_combobox()
{
    if (!m_combo)
        return;
    m_combo->ReParent(nullptr, uiframe7::CVisualElement::rpSilent);
    m_combo.reset();
}

} // namespace corr_dialogs2
