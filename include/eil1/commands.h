#pragma once
// Commands and tool-bar combo boxes the front end adds to the IDE. A
// command the user runs comes back as IDECallbackInterface::OnCommand.
#include "eil1/types.h"

namespace eil1 {

class CORR_DIALOGS2_API ICommands
{
    EIL1_SPECIAL_MEMBERS(ICommands);

    // false when the IDE already has a command of that number.
    virtual bool AddCommand(unsigned int command, const wchar_t* caption,
                            const wchar_t* tooltip) = 0;
    virtual void RemoveCommand(unsigned int command) = 0;
    virtual void EnableCommand(unsigned int command, bool enabled) = 0;
    virtual void CheckCommand(unsigned int command, bool checked) = 0;
};

class CORR_DIALOGS2_API IComboBoxes
{
    EIL1_SPECIAL_MEMBERS(IComboBoxes);

    // Puts a combo box on the tool bar; its changes go to callback.
    virtual bool AddComboBox(unsigned int combo, IComboBoxCallBack* callback) = 0;
    virtual void SetItems(unsigned int combo, const wchar_t* const* items, unsigned int count) = 0;
    // -1: nothing chosen.
    virtual void SetSelection(unsigned int combo, int index) = 0;
    virtual int GetSelection(unsigned int combo) = 0;
};

} // namespace eil1
