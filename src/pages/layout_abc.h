#pragma once
// The layout page of area, bar and column charts.
#include <string>

#include "pages/layout_page.h"

namespace ps {

// One form serves the area, bar and column layouts: the chart type words its frames and messages,
// picks its sample pictures and help topic, and says which axis box is the category axis (the
// vertical one on a bar chart, which lies on its side).
class frmPSLayoutABC : public PSLayoutPage {
public:
    explicit frmPSLayoutABC(Component& c);
    long HelpTopic() const override;
    void ValidSelections(bool& bResult) override;

protected:
    void DesignPage() override;
    void LoadPage() override;
    void UpdateChartMetadata() override;
    void FocusForMessage(const std::string& sMessage) override;

private:
    void SetFrameCaptions();
    void FillCategoryControls();
    void FillSeriesControls();
    void FillValueControl();
    void RestoreChartSelections(bool& bFound);
    // Why it runs: 0 an optCategories click, 2 an optSeries click, 4 a cboValues click, 5 load
    // after a restore, 6 load with nothing restored.
    void SetControlStates(long lTrigger);
    void ShowChartPicture();

    bool IsBar() const { return c.sChartType == "bar"; }
    forms::TextBox& CategoryAxisBox() { return IsBar() ? *txtVAxis : *txtHAxis; }
    forms::TextBox& ValueAxisBox() { return IsBar() ? *txtHAxis : *txtVAxis; }
    bool CategoryAxisSticky() const { return IsBar() ? bVAxisSticky : bHAxisSticky; }
    bool ValueAxisSticky() const { return IsBar() ? bHAxisSticky : bVAxisSticky; }
    std::string ShowsMessage() const;

    // The controls of the current load.
    forms::TextBox *txtTitle = nullptr, *txtComment = nullptr;
    forms::OptionButton *optCategories1 = nullptr, *optCategories2 = nullptr;
    forms::OptionButton *optSeries0 = nullptr, *optSeries1 = nullptr, *optSeries2 = nullptr;
    forms::ComboBox *cboCategories = nullptr, *cboSeries = nullptr, *cboValues = nullptr, *cboDataLabelMask = nullptr;
    forms::ListBox *lstCategories = nullptr, *lstSeries = nullptr;
    forms::CheckBox *chkShowValues = nullptr, *chk3D = nullptr, *chkStacked = nullptr, *chk100Pct = nullptr;
};

}  // namespace ps
