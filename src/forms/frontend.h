#pragma once
// The interfaces behind which a front end sits: showing forms and pumping messages (FrontEnd),
// message boxes and help (Dialogs), and, headless, the one who acts on a shown form (Driver).
#include <string>

namespace forms {

class Form;

// Message box styles and answers, as the dialog run-time numbers them.
inline constexpr long vbOKOnly = 0;
inline constexpr long vbOKCancel = 1;
inline constexpr long vbAbortRetryIgnore = 2;
inline constexpr long vbYesNoCancel = 3;
inline constexpr long vbYesNo = 4;
inline constexpr long vbRetryCancel = 5;
inline constexpr long vbCritical = 16;
inline constexpr long vbQuestion = 32;
inline constexpr long vbExclamation = 48;
inline constexpr long vbInformation = 64;
inline constexpr long vbOK = 1;
inline constexpr long vbCancel = 2;
inline constexpr long vbAbort = 3;
inline constexpr long vbRetry = 4;
inline constexpr long vbIgnore = 5;
inline constexpr long vbYes = 6;
inline constexpr long vbNo = 7;

// Screen mouse pointers.
inline constexpr long vbDefault = 0;
inline constexpr long vbHourglass = 11;

// The help command for a context topic.
inline constexpr long HH_HELP_CONTEXT = 15;

class Dialogs {
public:
    virtual ~Dialogs() = default;
    // A modal message box; an empty title means the application's default title. Answers the
    // button pressed (vbOK, vbCancel, ...).
    virtual long MsgBox(const std::string& text, long style, const std::string& title) = 0;
    // Context help of a topic in a help file; the window stays.
    virtual void Help(long hWnd, const std::string& helpFile, long command, long topic) = 0;
};

class FrontEnd {
public:
    virtual ~FrontEnd() = default;
    // Shows a loaded form modally; returns when the form is hidden or unloaded. Raises the form's
    // activate event when it comes up, and the deactivate and activate events of the form below.
    virtual void ShowModal(Form& form) = 0;
    // The form was hidden or unloaded by code: its modal show is to end.
    virtual void Closed(Form&) {}
    // Lets pending events run once (timers of the shown forms, painting).
    virtual void DoEvents() = 0;
    virtual long MousePointer() const = 0;
    virtual void SetMousePointer(long pointer) = 0;
    virtual long WindowHandle(const Form&) const { return 0; }
};

// Headless: acts on a shown form as a user would, through the form's gestures. Called
// re-entrantly when an action shows another form.
class Driver {
public:
    virtual ~Driver() = default;
    virtual void OnShow(Form& form) = 0;
};

}  // namespace forms
