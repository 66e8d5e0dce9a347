#pragma once
// PSFunctions: table discovery, the definition store on the hidden sheet, and the operations on
// chart definitions.
#include <string>
#include <vector>

#include "common/component.h"
#include "dom/document.h"

namespace ps {

class PSFunctions {
public:
    explicit PSFunctions(Component& c) : c(c) {}

    // Replaces colTables with the tables found in oWorkbook.
    void RetrieveTableDefinitions();
    // Builds colCharts, colChartObjects and colChartShapes from the definition sheet.
    void RetrieveChartDefinitions();
    // Writes a chart document to its row of the definition sheet.
    void SaveChartDefinition(const dom::DocumentRef& oChartDoc);
    // Carries renamed columns of one table into the chart definitions that use it.
    void UpdateChartColumnNames(const std::string& sTableRangeName, std::vector<std::string>& aOldColumnNames,
                                std::vector<std::string>& aNewColumnNames);
    // Starts a new chart: oChartDoc and sChartID.
    void CreateChartDoc();

private:
    Component& c;
};

}  // namespace ps
