#pragma once
// The Source Table and Chart Type page: the table the chart is drawn from and its type. The table
// decides which types are offered.
#include <string>

#include "pages/page.h"

namespace forms {
class Grid;
}

namespace ps {

class frmPSSelectTable : public PSWizardPage {
public:
    explicit frmPSSelectTable(Component& c);
    long HelpTopic() const override { return 2; }
    void ValidSelections(bool& bResult) override;

protected:
    void DesignPage() override;
    void LoadPage() override;
    void UpdateChartMetadata() override;
    void FocusForMessage(const std::string& sMessage) override;

private:
    forms::Grid& grdTables() const;
    void PlacePictures();
    void FillTableGrid();
    void AddTableRow(const std::string& sName, const std::string& sTableID);
    void UpdateChartTypes();
    void CheckTableStillValid();
    void SetChartType(int iIndex);

    bool bTableUsable_ = false;  // the selected table has a label column and a number column
    std::string sTableName_;     // the table selected at load, for the message about it
    bool bFilling_ = false;      // the grid's own selection changes while it is filled aren't the user's
};

}  // namespace ps
