#include "pages/select_action.h"

#include "common/common_functions.h"
#include "common/constants.h"
#include "controller/ps_controller.h"
#include "metadata/ps_functions.h"

namespace ps {

frmPSSelectAction::frmPSSelectAction(Component& c)
    : PSForm(c, "frmPSSelectAction", PageCaption("Select Action"), pcSelectAction) {}

void frmPSSelectAction::DesignPage() {
    AddButton("cmdNew", "&New...", static_cast<void (PSForm::*)()>(&frmPSSelectAction::cmdNew_Click)).SetDefault(true);
}

void frmPSSelectAction::cmdNew_Click() {
    c.lMethodType = mtNew;
    c.functions->CreateChartDoc();
    c.controller->PSJumpToStep(6, PageCode(), this);
}

void frmPSSelectAction::cmdCancel_Click() {
    try {
        Unload();
    } catch (const std::exception&) {
        c.common->ShowRuntimeError(CurrentError());
    }
}

}  // namespace ps
