#pragma once
// A component over a real engine workbook, with helpers to lay out tables and to save and reopen.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/clock.h"
#include "common/common_functions.h"
#include "common/component.h"
#include "common/constants.h"
#include "controller/plotsmith_controller.h"
#include "forms/headless.h"
#include "host/constants.h"
#include "host/drawing.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"
#include "test_support.h"
#include "xlsx/engine.h"

namespace testworld {

struct ManualClock : ps::Clock {
    double now = 0;
    double Timer() override { return now; }
};

struct World {
    forms::ScriptedDriver driver;
    forms::HeadlessFrontEnd fe{driver};
    forms::CollectingDialogs dialogs;
    ManualClock clock;
    ps::Component c{fe, dialogs, clock};
    host::Ref<xlsx::EngineApplication> app = xlsx::NewApplication();
    ps::PSFunctions& f = *c.functions;
    ps::CommonFunctions& cf = *c.common;

    World() {
        c.oApplication = app;
        c.oWorkbook = app->NewWorkbook();
    }
    host::Ref<host::Worksheet> Sheet(const std::string& name) { return c.oWorkbook->Worksheets()->Item(name); }
    host::Ref<host::Worksheet> AddSheet(const std::string& name) {
        auto ws = c.oWorkbook->Worksheets();
        auto s = ws->Add(nullptr, ws->Item(ws->Count()));
        s->SetName(name);
        return s;
    }
    host::Ref<host::Worksheet> SheetOrNew(const std::string& name) {
        return c.common->SheetExists(name) ? Sheet(name) : AddSheet(name);
    }
    // Writes values from (row, col) to the right.
    void Row(const host::Ref<host::Worksheet>& s, long row, long col, const std::vector<host::Variant>& values) {
        for (auto& v : values) {
            if (!v.IsEmpty()) s->Cells(row, col)->SetValue(v);
            ++col;
        }
    }
    void Name(const std::string& name, const std::string& refersTo) { c.oWorkbook->Names()->Add(name, refersTo); }
    // Saves to a scratch file and reopens it as the run's workbook.
    void SaveAndReopen(const std::string& test) {
        auto path = testsupport::ScratchDir(test) / "book.xlsx";
        c.oWorkbook->SaveAs(path.string());
        app->Close(c.oWorkbook);
        c.oWorkbook = app->Open(path.string());
    }
    std::string Text(const host::Ref<host::Worksheet>& s, long row, long col) {
        return host::CStr(s->Cells(row, col)->Value());
    }
    // The xml of a document without its trailing line break.
    static std::string Xml(const dom::DocumentRef& doc) {
        std::string s = doc->xml();
        while (!s.empty() && (s.back() == '\n' || s.back() == '\r')) s.pop_back();
        return s;
    }
    // The texts on the definition sheet from A2 to the first empty cell.
    std::vector<std::string> Rows() {
        std::vector<std::string> out;
        auto s = Sheet(ps::sDefinitionSheet);
        for (long r = 2; !Text(s, r, 1).empty(); ++r) out.push_back(Text(s, r, 1));
        return out;
    }
    // The same rows, each as its parsed document writes it (the text itself where it isn't XML).
    std::vector<std::string> Definitions() {
        std::vector<std::string> out;
        for (auto& text : Rows()) {
            auto d = f.ParseChartDefinition(text);
            out.push_back(d ? d->xml() : text);
        }
        return out;
    }
    // The `id` of each document of a collection, in order.
    static std::vector<std::string> Ids(const ps::CollectionRef<dom::DocumentRef>& col) {
        std::vector<std::string> out;
        if (!col) return out;
        for (auto& d : *col) out.push_back(host::CStr(d->documentElement().getAttribute("id")));
        return out;
    }
};

// The entry class with a component of its own, as the host creates it.
struct Entry {
    forms::ScriptedDriver driver;
    forms::HeadlessFrontEnd fe{driver};
    forms::CollectingDialogs dialogs;
    ManualClock clock;
    ps::CPlotsmithController entry{fe, dialogs, clock};
    ps::Component& c = entry.component();
};

}  // namespace testworld
