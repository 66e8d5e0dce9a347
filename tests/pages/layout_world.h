#pragma once
// A wizard run that stands at a layout page: a real engine workbook with tables, the run's
// collections loaded, a new or saved chart document, and the page shown through the controller.
#include <string>
#include <vector>

#include "component_world.h"
#include "controller/ps_controller.h"
#include "forms/form.h"
#include "pages/pages.h"
#include "pages/wizard_pages.h"

namespace layoutworld {

using forms::ScriptedDriver;
using Steps = std::vector<ScriptedDriver::Step>;

inline const std::string kLocation = "frmPSChartLocation";
inline const std::string kTable = "frmPSSelectTable";

struct LayoutRun : testworld::World {
    dom::DocumentRef doc;  // the run's document, kept after the run ends

    // A data sheet table: headings in row 1, rows below.
    void DataTable(const std::string& sheet, const std::vector<host::Variant>& headings,
                   const std::vector<std::vector<host::Variant>>& rows) {
        auto s = SheetOrNew(sheet);
        Row(s, 1, 1, headings);
        for (size_t i = 0; i < rows.size(); ++i) Row(s, static_cast<long>(i) + 2, 1, rows[i]);
    }
    // A range table under a defined name: title, a spare row and the headings, then the rows.
    void RangeTable(const std::string& name, const std::string& sheet, long top, const std::vector<host::Variant>& headings,
                    const std::vector<std::vector<host::Variant>>& rows) {
        auto s = SheetOrNew(sheet);
        Row(s, top, 1, {name});
        Row(s, top + 2, 1, headings);
        for (size_t i = 0; i < rows.size(); ++i) Row(s, top + 3 + static_cast<long>(i), 1, rows[i]);
        long last = top + 2 + static_cast<long>(rows.size());
        Name(name, "=" + sheet + "!$A$" + std::to_string(top) + ":$B$" + std::to_string(last));
    }
    // The run begins a new chart of this type on this table, as the pages before the layout leave it.
    void NewChart(const std::string& type, const std::string& table) {
        f.RetrieveTableDefinitions();
        f.RetrieveChartDefinitions();
        f.CreateChartDoc();
        Use(type, table);
    }
    // The run modifies a saved document.
    void Modify(const dom::DocumentRef& saved, const std::string& type, const std::string& table) {
        if (!c.colTables) f.RetrieveTableDefinitions();
        if (!c.colCharts) f.RetrieveChartDefinitions();
        c.oChartDoc = saved;
        c.sChartID = host::CStr(saved->documentElement().getAttribute("id"));
        Use(type, table);
    }
    void Use(const std::string& type, const std::string& table) {
        c.sChartType = type;
        c.sTableID = table;
        c.oChartDoc->documentElement().setAttribute("type", type);
        c.oChartDoc->documentElement().setAttribute("table-id", table);
        doc = c.oChartDoc;
    }
    void Show() {
        const std::string& t = c.sChartType;
        c.controller->ShowPage(t == "area"     ? ps::pgLayoutArea
                               : t == "bar"    ? ps::pgLayoutBar
                               : t == "column" ? ps::pgLayoutColumn
                               : t == "pie"    ? ps::pgLayoutPie
                               : t == "bubble" ? ps::pgLayoutBubble
                                               : ps::pgLayoutStrBuck);
    }

    // Drives `page` through the steps, closes the page that follows (none if `next` is empty), shows
    // the page and fails on any step the driver couldn't take.
    void Drive(const std::string& page, Steps steps, const std::string& next = kLocation) {
        driver.Visit(page, std::move(steps));
        if (!next.empty()) driver.Visit(next, {ScriptedDriver::Close()});
        Show();
        for (auto& p : driver.Problems()) ADD_FAILURE() << p;
    }

    // The children of `chart` that a page writes, as XML, without the attributes of `chart`.
    std::string Body() const {
        std::string out;
        for (auto n : doc->documentElement().childNodes()) out += n.xml();
        return out;
    }
    std::string Attr(const std::string& name) const { return host::CStr(doc->documentElement().getAttribute(name)); }

    static ScriptedDriver::Step Check(std::function<void(forms::Form&)> fn) { return ScriptedDriver::Do("check", std::move(fn)); }
    static ScriptedDriver::Step Focus(const std::string& control, int index = -1) {
        return ScriptedDriver::Do("focus " + control, [control, index](forms::Form& f) { EXPECT_TRUE(f.UserFocus(control, index)); });
    }
    static ScriptedDriver::Step ClickOpt(const std::string& control, int index) {
        return ScriptedDriver::Do("click " + control, [control, index](forms::Form& f) { EXPECT_TRUE(f.UserClick(control, index)); });
    }
};

template <class T>
T& Ctl(forms::Form& f, const std::string& name, int index = -1) {
    return f.Get<T>(name, index);
}
inline std::string Active(forms::Form& f) { return f.ActiveControl() ? f.ActiveControl()->Name() : std::string{}; }
// The names of the visible images whose names begin with "img" and the prefix.
inline std::vector<std::string> VisibleImages(forms::Form& f, const std::string& prefix) {
    std::vector<std::string> out;
    for (auto& ctl : f.Controls())
        if (ctl->kind() == forms::Kind::Image && ctl->Name().rfind(prefix, 0) == 0 && ctl->Visible()) out.push_back(ctl->Name());
    return out;
}
// Those of the named controls that are enabled, in the order asked; "name:i" is item i of an array.
inline std::string On(forms::Form& f, const std::vector<std::string>& names) {
    std::string out;
    for (auto& n : names) {
        auto colon = n.find(':');
        auto& ctl = colon == std::string::npos ? f.Get(n) : f.Get(n.substr(0, colon), std::stoi(n.substr(colon + 1)));
        if (ctl.Enabled()) out += (out.empty() ? "" : " ") + n;
    }
    return out;
}
inline std::vector<std::string> Items(forms::ListControl& l) {
    std::vector<std::string> out;
    for (long i = 0; i < l.ListCount(); ++i) out.push_back(l.List(i));
    return out;
}

}  // namespace layoutworld
