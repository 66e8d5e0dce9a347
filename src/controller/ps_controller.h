#pragma once
// PSController: carries out a run, the wizard's pages in order or a refresh without pages, and
// ends it. Pages never open each other: they call PSJumpToStep, the one entrance for all moves.
#include "common/component.h"

namespace forms {
class Form;
}

namespace ps {

class PSWizardPage;

// Page numbers of ShowPage.
enum PageNumber : long {
    pgSelectAction = 0, pgSelectTable = 1, pgLayoutArea = 2, pgLayoutBar = 3, pgLayoutBubble = 4,
    pgLayoutColumn = 5, pgLayoutStrBuck = 6, pgLayoutPie = 7, pgChartLocation = 8
};

class PSController {
public:
    explicit PSController(Component& c) : c(c) {}

    // One whole run: 0 the wizard, 1 a refresh of all charts.
    void ExecuteRun(long lMode);
    // lStep: 0 refresh, 1 start, 6 next, 7 previous, 8 finish, 9 end. oPage, when given, is
    // unloaded before the move.
    void PSJumpToStep(long lStep, long lFromPage, forms::Form* oPage);
    void JumpStart();
    void JumpNext(long lFromPage);
    void JumpPrevious(long lFromPage);
    void JumpFinish(long lFromPage);
    // Shows a page modally; returns when it is unloaded. Numbers above 8 show nothing.
    void ShowPage(long lPage);
    // Unloads a page as a change of page: its unload event doesn't end the run.
    void UnloadPage(forms::Form& oPage);
    void EndRun();

private:
    void Complain(const char* sWhere, const char* sComplaint);
    bool PageIsValid(PSWizardPage& oPage);  // loads the page without showing it and asks it
    // The layout page number of sChartType; -1 for a type without one.
    long LayoutPageNumber() const;
    Component& c;
};

}  // namespace ps
