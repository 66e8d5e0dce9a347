#pragma once
// A component over a real engine workbook with drawn charts that a test changes by hand, saves,
// reopens and loads again, as a user's next session does.
#include <string>
#include <vector>

#include "../builder/builder_world.h"
#include "host/chart.h"
#include "readback/ps_rev_engineer_chart.h"

namespace readbacktest {

struct ReadbackWorld : buildertest::BuilderWorld {
    ps::PSRevEngineerChart& r = *c.readback;
    int reloads = 0;

    ReadbackWorld() {
        Table("Data1", {{"Region", "Amount", "Cost", "Margin"},
                        {"East", 10.0, 4.0, 6.0},
                        {"West", 20.0, 5.0, 15.0},
                        {"North", 30.0, 6.0, 24.0}});
    }

    // A definition with its chart drawn as the builder leaves it: one series per number column
    // (up to `series`), of the given chart type, each with the regions as categories.
    host::Ref<host::Chart> Drawn(const std::string& xml, long chartType, long series = 3) {
        auto chart = Chart(xml);
        auto oChart = ChartObject(host::CStr(chart.getAttribute("id")));
        auto data = Sheet("Data1");
        const char* columns[] = {"B", "C", "D"};
        for (long i = 0; i < series; ++i) {
            auto s = oChart->SeriesCollection()->NewSeries();
            s->SetValues(data->Range(std::string(columns[i]) + "2:" + columns[i] + "4"));
            s->SetXValues(data->Range("A2:A4"));
            s->SetName(host::CStr(data->Cells(1, i + 2)->Value()));
        }
        oChart->SetChartType(chartType);
        return oChart;
    }

    // Saves every definition, saves the workbook, reopens it and loads tables and definitions:
    // the read-back runs on each chart.
    void Reload() {
        for (auto& doc : *c.colCharts) f.SaveChartDefinition(doc);
        SaveAndReopen(std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) + "_" +
                      std::to_string(++reloads));
        c.colTables = nullptr;
        c.colCharts = nullptr;
        f.RetrieveTableDefinitions();
        f.RetrieveChartDefinitions();
    }

    dom::Element Doc(const std::string& id) { return c.colCharts->Item(id)->documentElement(); }
    host::Ref<host::Chart> Live(const std::string& id) { return c.colChartObjects->Item(id); }

    // The xml of a child element, "" when there is none.
    static std::string Child(const dom::Element& chart, const std::string& name) {
        auto e = chart.selectSingleNode(name);
        return e ? e.xml() : std::string();
    }
    // The `persist` entries as "property=value", in document order.
    static std::vector<std::string> Persist(const dom::Element& chart) {
        std::vector<std::string> out;
        for (auto p : chart.selectNodes("auto-persistence/persist"))
            out.push_back(host::CStr(p.getAttribute("property")) + "=" + host::CStr(p.getAttribute("value")));
        return out;
    }
    // The entries of one group, by the start of their property name.
    static std::vector<std::string> Persist(const dom::Element& chart, const std::string& prefix) {
        std::vector<std::string> out;
        for (auto& p : Persist(chart))
            if (p.rfind(prefix, 0) == 0) out.push_back(p);
        return out;
    }

    // Sets every font value the read-back compares, so that no test leans on the engine's defaults.
    static void SetFont(const host::Ref<host::Font>& font, const char* name, double size, const char* style,
                        long color) {
        font->SetName(name);
        font->SetSize(size);
        font->SetFontStyle(style);
        font->SetColor(color);
    }
};

// A definition of the given type over Data1 with regions as categories and two number columns.
inline std::string Def(const std::string& id, const std::string& type, const std::string& more = "",
                       const std::string& extra = "") {
    using buildertest::Group;
    return buildertest::Def(id, type,
                            Group("categories", "rows", {"Region"}) + Group("series", "columns", {"Amount", "Cost"}) +
                                Group("values", "", {"Amount"}) + more,
                            extra);
}

}  // namespace readbacktest
