#pragma once
// Option pages the front end adds to the IDE's options, and wizards.
#include "eil1/windows.h"

namespace eil1 {

class CORR_DIALOGS2_API IOptionPage : public INativeWindowHolder
{
    EIL1_DERIVED_SPECIAL_MEMBERS(IOptionPage);

    virtual const wchar_t* GetTitle() = 0;
    // Stores what the page shows; false (and the page keeps the focus) when
    // a value is not valid.
    virtual bool Apply() = 0;
    // Shows the stored values again.
    virtual void Reset() = 0;
};

class CORR_DIALOGS2_API IWizardPage : public IVisual, public INativeWindowHolder
{
    EIL1_DERIVED_SPECIAL_MEMBERS(IWizardPage);

    virtual const wchar_t* GetTitle() = 0;
    // false keeps the user on the page.
    virtual bool CanLeave() = 0;
};

class CORR_DIALOGS2_API IWizard : public IVisual
{
    EIL1_DERIVED_SPECIAL_MEMBERS(IWizard);

    virtual unsigned int GetPageCount() = 0;
    // Null for an index past the end.
    virtual IWizardPage* GetPage(unsigned int index) = 0;
    // Runs what the wizard was for; false when it could not.
    virtual bool Finish() = 0;
};

} // namespace eil1
