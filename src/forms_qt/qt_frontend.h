#pragma once
// The Qt front end: a modal QDialog per shown form, its widgets made from the control model, the
// user's gestures on them fed back as the model's gestures (so the model's events run), and the
// model copied back onto the widgets after each. Message boxes are QMessageBoxes. Only hosts and
// their tests include this header; a QApplication must exist before anything here is used.
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <QDialog>
#include <QPointer>

#include "forms/frontend.h"

class QWidget;

namespace forms_qt {

class FormWindow;

class QtFrontEnd : public forms::FrontEnd {
public:
    QtFrontEnd();
    ~QtFrontEnd() override;

    // Shows the form's dialog, raises its activate event, then runs the dialog's own event loop
    // until the form is hidden or unloaded.
    void ShowModal(forms::Form& form) override;
    void Closed(forms::Form& form) override;
    // Runs the pending events once (timers of the shown forms, painting, input).
    void DoEvents() override;
    long MousePointer() const override { return pointer_; }
    void SetMousePointer(long pointer) override;
    long WindowHandle(const forms::Form& form) const override;

    // Called once a form's dialog is up and its event loop runs: a place to act on the widgets.
    std::function<void(forms::Form&)> onShown;

    // The dialog of a shown form, and the widget of one of its controls; nullptr when absent.
    QDialog* Dialog(const forms::Form& form) const;
    // The form whose window is on top; nullptr when none is shown.
    forms::Form* TopForm() const;
    QWidget* Widget(const forms::Form& form, const std::string& control, int index = -1) const;
    // Copies the control model onto the widgets of every shown form.
    void Refresh();

private:
    std::vector<FormWindow*> stack_;  // bottom to top
    long pointer_ = forms::vbDefault;
};

// Modal message boxes; an empty title takes the default title.
class QtDialogs : public forms::Dialogs {
public:
    explicit QtDialogs(std::string defaultTitle = "Brindle Plotsmith") : defaultTitle_(std::move(defaultTitle)) {}
    long MsgBox(const std::string& text, long style, const std::string& title) override;
    // Shows the topic's page of the help in a help window that stays beside the page: the help file
    // is a contents page, and topic n is the page "topic<n>.html" beside it. A missing help file is
    // a message.
    void Help(long hWnd, const std::string& helpFile, long command, long topic) override;
    // The help window while it is up.
    QDialog* HelpWindow() const { return help_; }

private:
    std::string defaultTitle_;
    QPointer<QDialog> help_;
};

}  // namespace forms_qt
