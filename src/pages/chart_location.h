#pragma once
// The Chart Location page: the chart's name and the sheet it stands on. Its validation is where a
// chart starts to exist: a new sheet if asked for, the saved definition, the empty chart object.
#include <string>

#include "pages/page.h"

namespace ps {

// The last page: Finish is its way on, Next stays off, and closing it doesn't end the run by itself.
class frmPSChartLocation : public PSWizardPage {
public:
    explicit frmPSChartLocation(Component& c);
    long HelpTopic() const override { return 8; }
    void ValidSelections(bool& bResult) override;

protected:
    void DesignPage() override;
    void LoadPage() override;
    void Form_Unload() override {}
    void cmdCancel_Click() override;
    // Back keeps a typed sheet that doesn't exist yet; it comes back when the page does.
    void UpdateChartMetadata() override { UpdateChartMetadata(ChosenSheet()); }
    void FocusForMessage(const std::string& sMessage) override;

private:
    void PopulateControls();
    void SetSheetControls();
    void UpdateChartMetadata(const std::string& sSheetName);
    // The sheet the controls name: the typed new sheet, or the one picked in the list.
    std::string ChosenSheet() const;
    bool NewSheetChosen() const;

    bool bNewChart_ = false;  // the chart has no object on a sheet yet: a new chart or a copy
};

}  // namespace ps
