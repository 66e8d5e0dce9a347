#pragma once
// The Select Action page: the first page when the workbook has charts. It lists them and leads on
// to a new chart, or to modify, copy or delete the selected ones, or shows a chart's or table's sheet.
#include <string>

#include "pages/page.h"

namespace forms {
class Grid;
}

namespace ps {

class frmPSSelectAction : public PSForm {
public:
    explicit frmPSSelectAction(Component& c);
    long HelpTopic() const override { return 1; }

protected:
    void DesignPage() override;
    void LoadPage() override;
    void cmdCancel_Click() override;

private:
    forms::Grid& grdCharts() const;
    void FillChartGrid();
    void AddChartRow(const std::string& sChartID, const std::string& sName, const std::string& sType,
                     const std::string& sChartSheet, const std::string& sTableSheet);
    void SelectCurrentChart();
    void UpdateButtons();
    void grdCharts_SelChange();
    void grdCharts_DblClick();
    void cmdNew_Click();
    void cmdModify_Click();
    void cmdCopy_Click();
    void cmdDelete_Click();
    void cmdGoToChart_Click();
    void cmdGoToTable_Click();
    void GoToSheet(long lColumn);
    // Modify's and Copy's start: a private copy of the selected chart's document in oChartDoc.
    void TakeSelectedChart();

    bool bFilling_ = false;  // the grid's own selection changes while it is filled aren't the user's
};

}  // namespace ps
