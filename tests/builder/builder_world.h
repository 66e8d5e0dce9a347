#pragma once
// A component over a real engine workbook with a data sheet table, chart definitions and their
// empty charts, and readers of the chart data sheet.
#include <string>
#include <vector>

#include "component_world.h"
#include "builder/ps_chart_builder.h"
#include "host/chart.h"

namespace buildertest {

struct BuilderWorld : testworld::World {
    ps::PSChartBuilder& b = *c.builder;

    // A data sheet table (headings in row 1, data below) on a sheet of its own.
    void Table(const std::string& sheet, const std::vector<std::vector<host::Variant>>& rows) {
        auto s = SheetOrNew(sheet);
        for (size_t i = 0; i < rows.size(); ++i) Row(s, static_cast<long>(i) + 1, 1, rows[i]);
    }
    // Loads tables and definitions, then enters a chart document with an empty chart on Sheet1.
    dom::Element Chart(const std::string& xml) {
        if (!c.colTables) f.RetrieveTableDefinitions();
        if (!c.colCharts) f.RetrieveChartDefinitions();
        auto doc = f.ParseChartDefinition(xml);
        EXPECT_TRUE(doc) << xml;
        auto chart = doc->documentElement();
        std::string id = host::CStr(chart.getAttribute("id"));
        c.colCharts->Add(doc, id);
        f.CreateEmptyChart("Sheet1", id);
        return chart;
    }
    host::Ref<host::Chart> ChartObject(const std::string& id) { return c.colChartObjects->Item(id); }
    // Saves and reopens; the saved file must pass the schemas.
    void SaveValidateAndReopen(const std::string& test) {
        SaveAndReopen(test);
        if (!testsupport::HaveValidator()) return;
        auto r = testsupport::ValidateXlsx({c.oWorkbook->FullName()});
        EXPECT_EQ(r.status, 0) << r.output;
    }
    // Drops what this run loaded, as the next session starts without it.
    void Forget() {
        c.colTables = nullptr;
        c.colCharts = nullptr;
        c.colChartObjects = nullptr;
        c.colChartShapes = nullptr;
    }
    // Texts of the data sheet, row by row up to the first empty cell of column 1, cells joined
    // by '|' up to the last non-empty one.
    std::vector<std::string> Data() {
        std::vector<std::string> out;
        auto s = Sheet(ps::sDataSheet);
        for (long r = 1; !Text(s, r, 1).empty(); ++r) {
            std::vector<std::string> cells;
            for (long col = 1; col <= 12; ++col) cells.push_back(Cell(r, col));
            while (!cells.empty() && cells.back().empty()) cells.pop_back();
            std::string line;
            for (size_t i = 0; i < cells.size(); ++i) line += (i ? "|" : "") + cells[i];
            out.push_back(line);
        }
        return out;
    }
    // One cell of the data sheet, read as Data() reads it.
    std::string Cell(long r, long col) { return Text(Sheet(ps::sDataSheet), r, col); }
    std::string Attr(const dom::Element& e, const std::string& name) { return c.common->GetAttributeText(e, name); }
};

// A chart definition over a table (Data1 unless told) with the given type and children.
inline std::string Def(const std::string& id, const std::string& type, const std::string& children,
                       const std::string& extra = "", const std::string& table = "Data1") {
    return "<chart id=\"" + id + "\" name=\"" + id + " name\" type=\"" + type + "\" table-id=\"" + table + "\"" +
           extra + ">" + children + "</chart>";
}
inline std::string Group(const std::string& element, const std::string& headingsIn,
                         const std::vector<std::string>& columns) {
    std::string s = "<" + element + (headingsIn.empty() ? "" : " headings-in=\"" + headingsIn + "\"") + ">";
    for (auto& col : columns) s += "<column name=\"" + col + "\"/>";
    return s + "</" + element + ">";
}

}  // namespace buildertest
