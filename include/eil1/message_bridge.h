#pragma once
// How the front end's messages reach the user through the IDE: an IDE that
// hosts the front end shows them where it shows its own (output pane,
// notifications) instead of the front end's own message boxes.
#include "eil1/types.h"

namespace eil1 {

class CORR_DIALOGS2_API IMessageBridge
{
    EIL1_SPECIAL_MEMBERS(IMessageBridge);

    enum class Severity {
        Info = 0,
        Warning = 1,
        Error = 2,
    };

    // Shows a message; false when the IDE cannot show it now (the front end
    // then shows it itself).
    virtual bool ShowMessage(Severity severity, const wchar_t* title, const wchar_t* text) = 0;
    // A passing line of status ("" clears it).
    virtual void ShowStatus(const wchar_t* text) = 0;
    // The bridge's further operations; null when the IDE has none.
    virtual IMessageBridgeEx* GetExtension() = 0;
};

class CORR_DIALOGS2_API IMessageBridgeEx
{
    EIL1_SPECIAL_MEMBERS(IMessageBridgeEx);

    // Asks the user to choose one of count buttons; the index of the chosen
    // one, or -1 when the IDE cannot ask (the front end asks itself).
    virtual int AskQuestion(const wchar_t* title, const wchar_t* text,
                            const wchar_t* const* buttons, unsigned int count) = 0;
    // Shows a source location in the IDE's editor; false when it cannot.
    virtual bool ShowLocation(const wchar_t* file, long line) = 0;
};

} // namespace eil1
