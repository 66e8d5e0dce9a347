#include "pages/busy.h"

#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "controller/ps_controller.h"

namespace ps {

frmBusyPS::frmBusyPS(Component& c) : forms::Form(c.frontEnd, "frmBusyPS"), c(c) {}

void frmBusyPS::Design() {
    SetCaption("Please Wait");
    Add<forms::Label>("WaitLabel").SetCaption("Loading . . .");
    auto& bar = Add<forms::ProgressBar>("ProgressBar1");
    bar.Width = 240;
    bar.Height = 14;
    auto& timer = Add<forms::Timer>("Timer1");
    timer.SetEnabled(false);
    timer.Tick = [this] { Timer1_Timer(); };
}

void frmBusyPS::Form_Load() { Get<forms::Timer>("Timer1").Interval = 100; }

void frmBusyPS::Form_Activate() {
    Get<forms::ProgressBar>("ProgressBar1").SetValue(0);
    Get<forms::Timer>("Timer1").SetEnabled(true);
    if (!bWorking) {
        bWorking = true;
        switch (lMethodType) {
            case 0: c.builder->PopulateAllCharts(); break;
            case 1: c.builder->PopulateChart(sChartID); break;
            case 2: c.controller->ExecuteRun(rMode); break;
            default: break;
        }
    }
    Hide();
}

void frmBusyPS::Form_Deactivate() {
    Get<forms::ProgressBar>("ProgressBar1").SetValue(0);
    Get<forms::Timer>("Timer1").SetEnabled(false);
}

void frmBusyPS::Timer1_Timer() {
    auto& timer = Get<forms::Timer>("Timer1");
    timer.Interval = 100;
    auto& bar = Get<forms::ProgressBar>("ProgressBar1");
    bar.SetValue(bar.Value() < 100 ? bar.Value() + 5 : 0);
    c.common->YieldToHost();
}

}  // namespace ps
