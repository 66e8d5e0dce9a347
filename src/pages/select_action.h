#pragma once
// The Select Action page: the first page when the workbook has charts.
#include "pages/page.h"

namespace ps {

class frmPSSelectAction : public PSForm {
public:
    explicit frmPSSelectAction(Component& c);
    long HelpTopic() const override { return 1; }

protected:
    void DesignPage() override;
    void cmdCancel_Click() override;

private:
    void cmdNew_Click();
};

}  // namespace ps
