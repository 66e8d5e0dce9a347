#pragma once
// A workbook with data sheet tables and placed charts, and a wizard run over it driven headlessly
// through the real controller.
#include <functional>
#include <string>
#include <vector>

#include "component_world.h"
#include "builder/ps_chart_builder.h"
#include "host/chart.h"
#include "controller/ps_controller.h"
#include "pages/pages.h"
#include "pages/select_action.h"
#include "pages/wizard_pages.h"

namespace wizardtest {

using forms::ScriptedDriver;
using Steps = std::vector<ScriptedDriver::Step>;

inline const std::string kAction = "Brindle Plotsmith - Select Action";
inline const std::string kTable = "Brindle Plotsmith - Source Table and Chart Type";
inline const std::string kLayout = "Brindle Plotsmith - Chart Layout";
inline const std::string kLocation = "Brindle Plotsmith - Chart Location";

struct WizardBook : testworld::World {
    WizardBook() {
        // A refresh on a newer host runs inside the busy window; it needs nobody to act on it.
        for (int i = 0; i < 8; ++i) driver.Visit("frmBusyPS", {});
    }

    // A data sheet table: headings in row 1, rows below.
    void Table(const std::string& sheet, const std::vector<std::vector<host::Variant>>& rows) {
        auto s = SheetOrNew(sheet);
        for (size_t i = 0; i < rows.size(); ++i) Row(s, static_cast<long>(i) + 1, 1, rows[i]);
    }
    // Region (labels) and Amount (numbers) on Data1.
    void RegionTable(const std::string& sheet = "Data1") {
        Table(sheet, {{"Region", "Amount"}, {"North", 10.0}, {"South", 20.0}});
    }

    // Places and draws a chart by categories (first label column) and values (first number column),
    // as the last page and the build do, and saves the definition. Answers its id.
    std::string PlaceChart(const std::string& name, const std::string& type, const std::string& table,
                           const std::string& sheet, const std::string& category = "Region",
                           const std::string& value = "Amount") {
        if (!c.colTables) f.RetrieveTableDefinitions();
        if (!c.colCharts) f.RetrieveChartDefinitions();
        f.CreateChartDoc();
        auto chart = c.oChartDoc->documentElement();
        chart.setAttribute("name", name);
        chart.setAttribute("type", type);
        chart.setAttribute("table-id", table);
        auto add = [&](const std::string& element, const std::string& headingsIn, const std::string& column) {
            auto e = c.oChartDoc->createElement(element);
            if (!headingsIn.empty()) e.setAttribute("headings-in", headingsIn);
            if (!column.empty()) {
                auto col = c.oChartDoc->createElement("column");
                col.setAttribute("name", column);
                e.appendChild(col);
            }
            chart.appendChild(e);
        };
        add("categories", "rows", category);
        add("series", "none", "");
        add("values", "", value);
        std::string id = c.sChartID;
        EXPECT_TRUE(f.PlaceChartDefinition(sheet));
        c.builder->PopulateChart(id);
        f.SaveChartDefinition(c.oChartDoc);
        return id;
    }
    // Lets go of the run's state, as the end of a run does.
    void Release() { c.controller->EndRun(); }

    // Runs the wizard over the pages the driver expects; fails on any step it couldn't take.
    void Run() {
        c.controller->ExecuteRun(0);
        for (auto& p : driver.Problems()) ADD_FAILURE() << p;
    }

    ScriptedDriver::Step Expect(std::function<void()> check) {
        return ScriptedDriver::Do("check", [check](forms::Form&) { check(); });
    }
    // The named control of the page being shown.
    template <class T = forms::Control>
    static T& Ctl(forms::Form& page, const std::string& name, int index = -1) {
        return page.Get<T>(name, index);
    }
    std::string Attr(const dom::Element& e, const std::string& name) { return c.common->GetAttributeText(e, name); }
    std::string ChartAttr(const std::string& name) { return Attr(c.oChartDoc->documentElement(), name); }
    // A definition as saved on the definition sheet, by chart id.
    dom::Element Saved(const std::string& id) {
        for (auto& text : Rows()) {
            auto d = f.ParseChartDefinition(text);
            if (d && Attr(d->documentElement(), "id") == id) return d->documentElement();
        }
        return {};
    }
    std::vector<std::string> ShapesWithText(const std::string& sheet, const std::string& altText) {
        std::vector<std::string> out;
        auto shapes = Sheet(sheet)->Shapes();
        for (long i = 1; i <= shapes->Count(); ++i)
            if (shapes->Item(i)->AlternativeText() == altText) out.push_back(shapes->Item(i)->Name());
        return out;
    }
};

}  // namespace wizardtest
