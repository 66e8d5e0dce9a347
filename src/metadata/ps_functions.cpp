#include "metadata/ps_functions.h"

namespace ps {

void PSFunctions::RetrieveTableDefinitions() {
    // Table discovery is not built yet: it finds no table.
    c.colTables = std::make_shared<host::Collection<dom::DocumentRef>>();
}

void PSFunctions::RetrieveChartDefinitions() {
    // The definition store is not built yet: it finds no chart.
    c.colCharts = std::make_shared<host::Collection<dom::DocumentRef>>();
    c.colChartObjects = std::make_shared<host::Collection<host::Ref<host::Chart>>>();
    c.colChartShapes = std::make_shared<host::Collection<host::Ref<host::Shape>>>();
}

void PSFunctions::SaveChartDefinition(const dom::DocumentRef&) {
    // The definition store is not built yet: nothing is written.
}

void PSFunctions::UpdateChartColumnNames(const std::string&, std::vector<std::string>&, std::vector<std::string>&) {
    // Column renaming is not built yet: the definitions stay as they are.
}

void PSFunctions::CreateChartDoc() {
    // Chart documents are not built yet: no document is begun.
}

}  // namespace ps
