#pragma once
// What the wizard pages share: a form over the component with a caption and help topic, event
// handlers under the plain error block, and, for the pages behind Select Action, the Next, Back,
// Finish, Cancel and Help buttons, DisplayMessage and ValidSelections.
#include <exception>
#include <string>

#include "common/component.h"
#include "forms/form.h"

namespace ps {

// Page codes passed to PSJumpToStep as the origin of a move.
enum PageCode : long { pcOutside = 1, pcSelectAction = 2, pcSelectTable = 3, pcLayout = 4, pcChartLocation = 5 };

// "<product> - <page>": the caption of a wizard page.
std::string PageCaption(const char* sPage);

class PSForm : public forms::Form {
public:
    PSForm(Component& c, std::string formName, std::string caption, long lPageCode);
    long PageCode() const { return lPageCode_; }
    virtual long HelpTopic() const = 0;

protected:
    void Design() override;
    void Form_Load() override;
    void Form_Unload() override;  // the end of the run: PSJumpToStep(9, page code, Nothing)

    // The move buttons of the page, made after Help and Cancel and before the page's controls.
    virtual void DesignButtons() {}
    // The page's own controls and filling steps, after the shared ones.
    virtual void DesignPage() {}
    virtual void LoadPage() {}

    virtual void cmdCancel_Click();
    void cmdHelp_Click();

    // Runs an event handler under the plain error block: the description alone, titled with the
    // host's name and the product title.
    template <class F>
    void Handle(F&& body) {
        try {
            body();
        } catch (const std::exception&) {
            ReportHandlerError();
        }
    }
    void ReportHandlerError();
    // Adds a command button whose click runs a handler under the plain error block.
    forms::CommandButton& AddButton(const std::string& name, const std::string& caption, void (PSForm::*handler)());

    Component& c;

private:
    std::string caption_;
    long lPageCode_;
};

class PSWizardPage : public PSForm {
public:
    using PSForm::PSForm;

    // Runs the page's rules: on failure one message through DisplayMessage, False and nothing
    // written; on success the page's choices go to oChartDoc and the answer is True. Works on a
    // page that is loaded and not shown.
    virtual void ValidSelections(bool& bResult);
    void DisplayMessage(const std::string& sMessage);

protected:
    void DesignButtons() override;
    void Form_Activate() override;

    // Writes the controls into oChartDoc.
    virtual void UpdateChartMetadata() {}
    // Moves the focus to the control a message is about.
    virtual void FocusForMessage(const std::string&) {}

    virtual void cmdNext_Click();
    virtual void cmdBack_Click();
    virtual void cmdFinish_Click();
};

// The enabled look of combo, list and text boxes: off with the button face colour, on in white;
// every page sets the two together.
void SetInputEnabled(forms::Control& ctl, bool bEnabled);

// Marks the container of the control that got the focus (a frame, or the form itself): captions in
// it take the tool tip colour, a frame's title goes bold and flat; all other frames go back to
// normal. Without a control the mark is cleared.
void StyleFormControls(forms::Form& oForm);
void StyleFormControls(forms::Form& oForm, const forms::Control& oFocused);

}  // namespace ps
