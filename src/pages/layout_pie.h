#pragma once
// The layout page of pie charts: one label column names the slices, one number column sizes them;
// no axes and no colour dimension.
#include <string>

#include "pages/layout_page.h"

namespace ps {

class frmPSLayoutPie : public PSLayoutPage {
public:
    explicit frmPSLayoutPie(Component& c);
    long HelpTopic() const override { return 6; }
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
    forms::ComboBox *cboValues = nullptr, *cboNumberMask = nullptr;
    forms::ListBox* lstCategories = nullptr;
    forms::OptionButton* optDataLabels[3] = {};
    forms::CheckBox *chk3D = nullptr, *chkExploded = nullptr;
};

}  // namespace ps
