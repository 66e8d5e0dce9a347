#pragma once
// PSChartBuilder: rebuilds one chart, all charts, or the charts of one table, and holds the
// variables of the chart being built.
#include <string>

#include "common/component.h"
#include "host/fwd.h"

namespace ps {

class PSChartBuilder {
public:
    explicit PSChartBuilder(Component& c) : c(c) {}

    void PopulateAllCharts();
    void RefreshAllCharts();
    void PopulateModifiedCharts(const std::string& sTableRangeName);
    void RefreshChart(const std::string& sChartID);
    void PopulateChart(const std::string& sChartID);

    // The chart being built.
    std::string mChartType = "unknown";
    host::Ref<host::Chart> mChart;
    bool mNewOrCopiedChart = false;
    long mSavedCalculation = 0;

private:
    bool OlderHost();  // version 11 or below: no busy window
    void RunRefresh(long lBusyMethod, const std::string& sChartID);
    Component& c;
};

}  // namespace ps
