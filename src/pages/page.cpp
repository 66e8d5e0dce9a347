#include "pages/page.h"

#include "common/common_functions.h"
#include "common/constants.h"
#include "controller/ps_controller.h"
#include "forms/frontend.h"

namespace ps {

// ---------------------------------------------------------------- all pages

std::string PageCaption(const char* sPage) { return std::string(sProductTitle) + " - " + sPage; }

PSForm::PSForm(Component& c, std::string formName, std::string caption, long lPageCode)
    : forms::Form(c.frontEnd, std::move(formName)), c(c), caption_(std::move(caption)), lPageCode_(lPageCode) {}

forms::CommandButton& PSForm::AddButton(const std::string& name, const std::string& caption,
                                        void (PSForm::*handler)()) {
    auto& b = Add<forms::CommandButton>(name);
    b.SetCaption(caption);
    b.Click = [this, handler] { Handle([&] { (this->*handler)(); }); };
    return b;
}

void PSForm::Design() {
    AddButton("cmdHelp", "&Help", &PSForm::cmdHelp_Click);
    AddButton("cmdCancel", "Cancel", &PSForm::cmdCancel_Click).SetCancel(true);
    DesignButtons();
    size_t nCommon = Controls().size();
    DesignPage();
    // Tab order: the page's controls as made, then the buttons the page made itself, then the
    // common ones in the order they stand (Help, Cancel, Back, Next, Finish).
    auto isButton = [](const forms::Control& ctl) {
        return ctl.kind() == forms::Kind::CommandButton && !ctl.Container();
    };
    long lTab = 0;
    for (auto& ctl : Controls())
        if (!isButton(*ctl)) ctl->TabIndex = lTab++;
    for (size_t i = nCommon; i < Controls().size(); ++i)
        if (isButton(*Controls()[i])) Controls()[i]->TabIndex = lTab++;
    for (size_t i = 0; i < nCommon; ++i) Controls()[i]->TabIndex = lTab++;
}

void PSForm::Form_Load() {
    Handle([&] { ApplyLocaleFontsToForm(*this); });
    SetCaption(caption_);
    Handle([&] { LoadPage(); });
}

void PSForm::Form_Unload() {
    Handle([&] { c.controller->PSJumpToStep(9, lPageCode_, nullptr); });
}

void PSForm::cmdCancel_Click() { Unload(); }

void PSForm::cmdHelp_Click() { c.dialogs.Help(hWnd(), c.sHelpFile, forms::HH_HELP_CONTEXT, HelpTopic()); }

void PSForm::ReportHandlerError() { c.common->ReportHandlerError(); }

// ---------------------------------------------------------------- pages with Next, Back, Finish

void PSWizardPage::DesignButtons() {
    AddButton("cmdBack", "< &Back", static_cast<void (PSForm::*)()>(&PSWizardPage::cmdBack_Click));
    AddButton("cmdNext", "&Next >", static_cast<void (PSForm::*)()>(&PSWizardPage::cmdNext_Click)).SetDefault(true);
    AddButton("cmdFinish", "&Finish", static_cast<void (PSForm::*)()>(&PSWizardPage::cmdFinish_Click));
}

void PSWizardPage::Form_Activate() {
    Handle([&] { DisplayMessage(""); });
}

void PSWizardPage::ValidSelections(bool& bResult) {
    // The page's own rules are not built yet: every selection is valid and nothing is written.
    bResult = true;
}

void PSWizardPage::DisplayMessage(const std::string& sMessage) {
    std::string sText = sMessage.empty() ? c.sPendingMessage : sMessage;
    if (!Visible()) {
        c.sPendingMessage = sMessage;
        return;
    }
    if (sText.empty()) return;
    c.common->ShowMessage(sText);
    FocusForMessage(sText);
}

void PSWizardPage::cmdNext_Click() {
    bool bResult = false;
    ValidSelections(bResult);
    if (bResult) c.controller->PSJumpToStep(6, PageCode(), this);
}

void PSWizardPage::cmdBack_Click() {
    UpdateChartMetadata();
    c.controller->PSJumpToStep(7, PageCode(), this);
}

void PSWizardPage::cmdFinish_Click() {
    bool bResult = false;
    ValidSelections(bResult);
    if (bResult) c.controller->PSJumpToStep(8, PageCode(), this);
}

void SetInputEnabled(forms::Control& ctl, bool bEnabled) {
    ctl.SetEnabled(bEnabled);
    ctl.SetBackColor(bEnabled ? forms::vbWhite : forms::vbButtonFace);
}

// ---------------------------------------------------------------- focus highlight

namespace {
std::string ContainerName(const forms::Control& ctl) {
    return ctl.Container() ? ctl.Container()->Name() : ctl.Parent().Name();
}

void MarkContainer(forms::Form& oForm, const std::string& sCurrent) {
    for (auto& ctl : oForm.Controls()) {
        std::string sPrefix = host::UCase(host::Left(ctl->Name(), 3));
        bool bFrame = sPrefix == "FRA";
        bool bCaptioned = bFrame || sPrefix == "OPT" || sPrefix == "CHK" || sPrefix == "LBL";
        if (bFrame) {
            ctl->SetFontBold(false);
            ctl->SetAppearance(1);
        }
        if (bCaptioned) ctl->SetBackColor(forms::vbButtonFace);
        if (sCurrent.empty() || (ctl->Name() != sCurrent && ContainerName(*ctl) != sCurrent)) continue;
        if (bFrame) {
            ctl->SetFontBold(true);
            ctl->SetAppearance(0);
        }
        if (bCaptioned) ctl->SetBackColor(forms::vbInfoBackground);
    }
}
}  // namespace

void StyleFormControls(forms::Form& oForm) { MarkContainer(oForm, {}); }

void StyleFormControls(forms::Form& oForm, const forms::Control& oFocused) {
    MarkContainer(oForm, ContainerName(oFocused));
}

}  // namespace ps
