#pragma once
// The busy window: carries a long run of work inside its own activation and keeps the host alive
// meanwhile; it hides itself when the work is done, which ends the caller's modal show.
#include <string>

#include "common/component.h"
#include "forms/form.h"

namespace ps {

class frmBusyPS : public forms::Form {
public:
    explicit frmBusyPS(Component& c);

    // Written by the caller before showing.
    bool bWorking = false;  // the work has been started
    long lMethodType = 0;   // 0 PopulateAllCharts, 1 PopulateChart(sChartID), 2 ExecuteRun(rMode)
    long rMode = 0;
    std::string sChartID;

protected:
    void Design() override;
    void Form_Load() override;
    void Form_Activate() override;
    void Form_Deactivate() override;

private:
    void Timer1_Timer();
    Component& c;
};

}  // namespace ps
