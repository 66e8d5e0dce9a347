#pragma once
// The layout page of bubble charts: a place on two number axes, a size from a third number column,
// a colour from a label column, and the label value a bubble stands for.
#include <string>

#include "pages/layout_page.h"

namespace ps {

class frmPSLayoutBubble : public PSLayoutPage {
public:
    explicit frmPSLayoutBubble(Component& c);
    long HelpTopic() const override { return 7; }
    void ValidSelections(bool& bResult) override;

protected:
    void DesignPage() override;
    void LoadPage() override;
    void UpdateChartMetadata() override;
    void FocusForMessage(const std::string& sMessage) override;

private:
    void RestoreChartSelections();
    void ShowChartPicture();

    forms::TextBox *txtTitle = nullptr, *txtComment = nullptr;
    forms::ListBox* lstYValues = nullptr;
    forms::ComboBox *cboXValues = nullptr, *cboCategories = nullptr, *cboSizes = nullptr, *cboSeries = nullptr;
    forms::CheckBox *chkShowZeroBubbles = nullptr, *chk3D = nullptr, *chkQuadrants = nullptr;
    forms::CheckBox *chkScaleXAxis = nullptr, *chkScaleYAxis = nullptr;
};

}  // namespace ps
