// Formulas the engine computes: those without a value when they are read, and those over cells
// it wrote; the value goes into the saved file. What it can't compute as the application would
// keeps the value the file has, and is named.
#include <gtest/gtest.h>

#include "host/constants.h"
#include "test_support.h"
#include "xlsx/engine.h"
#include "xlsx/formulas.h"

using namespace host;
namespace ts = testsupport;

namespace {

Ref<Workbook> Reopened(const Ref<xlsx::EngineApplication>& app, Ref<Workbook> wb, const ts::fs::path& file) {
    wb->SaveAs(file.string());
    app->Close(wb);
    return app->Open(file.string());
}

TEST(Formulas, ComputedWhenReadWithoutValueAndSavedAsTheirValue) {
    auto file = ts::ScratchDir("formulas-computed") / "book.xlsx";
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto ws = wb->Worksheets()->Item(1L);
    auto other = wb->Sheets()->Add(nullptr, ws);
    other->SetName("My data");
    other->Cells(1, 3)->SetValue(5.0);
    for (long r = 1; r <= 3; ++r) ws->Cells(r, 1)->SetValue(r * 10.0);
    ws->Cells(1, 2)->SetValue("North");
    ws->Cells(2, 2)->SetValue(true);
    const std::pair<const char*, Variant> computed[] = {
        {"=A1*3", 30.0},
        {"=SUM(A1:A3)", 60.0},
        {"=SUM(A:A)-A1", 50.0},
        {"=SUM(A1:B1)", 10.0},  // texts in a sum's range are skipped
        {"=AVERAGE(A1:A3)", 20.0},
        {"=MAX(A1,A3)-MIN(A1,A2)", 20.0},
        {"=IF(A1>15,\"big\",\"small\")", "small"},
        {"=A2>15", true},
        {"=A1/0", Variant::CellError(xlErrDiv0)},
        {"='My data'!C1+D1", 35.0},
        {"=INT(-A1/3)", -4.0},
        {"=-2^2+PI()*0", 4.0},
    };
    const std::pair<const char*, const char*> refused[] = {
        {"=ROUND(A1,0)", "ROUND is a function the engine doesn't compute"},
        {"=_xlfn.CONCAT(A1)", "CONCAT is a function the engine doesn't compute"},
        {"=B1*2", "it reads a text"},
        {"=B2+1", "it reads a logical value or an error"},
        {"=AVERAGE(A1:A4)", "AVERAGE, MIN or MAX reads an empty cell, which the engine counts"},
        {"=A1&\"x\"", "it joins texts, which the engine writes its own way"},
        {"=[1]Prices!A1", "it refers to another workbook"},
        {"=Rate*2", "it uses the name RATE, which the engine doesn't compute"},
        {"=MAX(A1:A3)", "the engine's MAX reads no ranges"},
        {"=E1+1", "it reads a formula the engine doesn't compute"},
        {"=IF(A1>15,A1>20,0)", "it compares where the engine would give a number for a logical value"},
    };
    long row = 0;
    for (auto& [formula, value] : computed) ws->Cells(++row, 4)->SetFormula(formula);
    row = 0;
    for (auto& [formula, why] : refused) ws->Cells(++row, 5)->SetFormula(formula);

    // Read before the save: computed then, and kept.
    EXPECT_EQ(ws->Cells(1, 4)->Value(), Variant(30.0));
    auto left = xlsx::TakeUncomputedFormulas(wb);
    wb = Reopened(app, wb, file);
    ws = wb->Worksheets()->Item(1L);
    row = 0;
    for (auto& [formula, value] : computed) EXPECT_EQ(ws->Cells(++row, 4)->Value(), value) << formula;
    EXPECT_EQ(ws->Cells(9, 4)->Text(), "#DIV/0!");
    // Refused formulas keep what the file has: nothing, here.
    ASSERT_EQ(left.size(), std::size(refused));
    row = 0;
    for (auto& [formula, why] : refused) {
        EXPECT_TRUE(ws->Cells(++row, 5)->Value().IsEmpty()) << formula;
        EXPECT_EQ(left[row - 1].formula, formula + 1);
        EXPECT_EQ(left[row - 1].reason, why) << formula;
    }
    EXPECT_EQ(xlsx::DescribeUncomputed({left[0], left[2]}),
              "Sheet1!E1 =ROUND(A1,0) (ROUND is a function the engine doesn't compute); "
              "Sheet1!E3 =B1*2 (it reads a text)");
    // Nothing was computed since: the file stays as it is.
    EXPECT_FALSE(app->Changed(wb));
}

TEST(Formulas, WrittenCellsRecomputeWhatReadsThemAndAnUntouchedFileStaysAsItIs) {
    auto file = ts::ScratchDir("formulas-written") / "book.xlsx";
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto ws = wb->Worksheets()->Item(1L);
    for (long r = 1; r <= 4; ++r) ws->Cells(r, 1)->SetValue(r * 1.0);
    ws->Cells(6, 1)->SetFormula("=SUM(A1:A4)");
    ws->Cells(7, 1)->SetFormula("=A6*10");
    ws->Cells(8, 3)->SetFormula("=A2*2");
    // Never read: the save computes them.
    wb = Reopened(app, wb, file);
    ws = wb->Worksheets()->Item(1L);
    EXPECT_EQ(ws->Cells(7, 1)->Value(), Variant(100.0));
    EXPECT_FALSE(app->Changed(wb)) << "values read as the file has them";

    ws->Cells(4, 1)->SetValue(14.0);
    EXPECT_EQ(ws->Cells(7, 1)->Value(), Variant(200.0));
    ws->Rows(1)->Delete();  // the sum loses a row
    ws->Cells(1, 1)->SetValue(7.0);
    EXPECT_TRUE(xlsx::TakeUncomputedFormulas(wb).empty());
    wb = Reopened(app, wb, file);
    ws = wb->Worksheets()->Item(1L);
    EXPECT_EQ(ws->Cells(5, 1)->Formula(), "=SUM(A1:A3)");
    EXPECT_EQ(ws->Cells(5, 1)->Value(), Variant(24.0));
    EXPECT_EQ(ws->Cells(6, 1)->Value(), Variant(240.0));
    EXPECT_EQ(ws->Cells(7, 3)->Value(), Variant(14.0));
}

}  // namespace
