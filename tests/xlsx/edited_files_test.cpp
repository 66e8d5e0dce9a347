// Files the engine edits, as other readers see them: the schema validator, openpyxl, LibreOffice.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "host/constants.h"
#include "test_support.h"
#include "xlsx/engine.h"

namespace ts = testsupport;
using namespace host;

namespace {

std::string ReadFile(const ts::fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

// A workbook the application made, edited as the component edits: a cell, a row in, a row out.
ts::fs::path EditedCorpusBook() {
    static ts::fs::path out = [] {
        auto dir = ts::ScratchDir("edited");
        auto app = xlsx::NewApplication();
        auto wb = app->Open((ts::SharedDir() / "corpus/excel/aspose_FinancialPlan.xlsx").string());
        auto ws = wb->Worksheets()->Item(1L);
        ws->Rows(3)->Insert();
        ws->Cells(3, 1)->SetValue("inserted row");
        ws->Cells(3, 2)->SetValue(1234.5);
        ws->Rows(8)->Delete();
        ws->Cells(1, 8)->SetValue("edited");
        auto p = dir / "FinancialPlan-edited.xlsx";
        wb->SaveAs(p.string());
        return p;
    }();
    return out;
}

// A new workbook with values and formulas over rows that then move.
ts::fs::path EditedNewBook() {
    static ts::fs::path out = [] {
        auto dir = ts::ScratchDir("edited-new");
        auto app = xlsx::NewApplication();
        auto wb = app->NewWorkbook();
        auto ws = wb->Worksheets()->Item(1L);
        ws->SetName("Data");
        ws->Cells(1, 1)->SetValue("Item");
        ws->Cells(1, 2)->SetValue("Amount");
        for (long r = 2; r <= 6; ++r) {
            ws->Cells(r, 1)->SetValue("Item " + std::to_string(r - 1));
            ws->Cells(r, 2)->SetValue(r * 1.5);
        }
        ws->Cells(7, 2)->SetFormula("=SUM(B2:B6)");
        ws->Cells(7, 2)->SetNumberFormat("#,##0.00");
        wb->Names()->Add("VEX_TableRange1", "=Data!$A$1:$B$6");
        ws->Rows(4)->Insert();
        ws->Cells(4, 1)->SetValue("Late item");
        ws->Cells(4, 2)->SetValue(100);
        ws->Rows(3)->Delete();
        auto p = dir / "new-edited.xlsx";
        wb->SaveAs(p.string());
        return p;
    }();
    return out;
}

TEST(EditedFiles, PassTheSchemasAndReadBackInOpenpyxl) {
    if (ts::SharedDir().empty() || !ts::HaveValidator() || !ts::HaveOpenpyxl())
        GTEST_SKIP() << "corpus, validator or openpyxl missing";
    auto v = ts::ValidateXlsx({EditedCorpusBook(), EditedNewBook()});
    EXPECT_EQ(v.status, 0) << v.output;

    auto r = ts::Python(
        "import openpyxl\n"
        "wb = openpyxl.load_workbook(" + ts::Quote(EditedNewBook().string()) + ")\n"
        "ws = wb['Data']\n"
        "for row in ws.iter_rows(min_row=1, max_row=7, max_col=2, values_only=True): print(row)\n"
        "print(wb.defined_names['VEX_TableRange1'].attr_text)\n"
        "wb = openpyxl.load_workbook(" + ts::Quote(EditedCorpusBook().string()) + ")\n"
        "ws = wb.worksheets[0]\n"
        "print(ws['A3'].value, ws['B3'].value, ws['H1'].value)\n");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_EQ(r.output,
              "('Item', 'Amount')\n"
              "('Item 1', 3)\n"
              "('Late item', 100)\n"
              "('Item 3', 6)\n"
              "('Item 4', 7.5)\n"
              "('Item 5', 9)\n"
              "(None, '=SUM(B2:B6)')\n"
              "Data!$A$1:$B$6\n"
              "inserted row 1234.5 edited\n");
}

TEST(EditedFiles, OpenInLibreOffice) {
    if (ts::SharedDir().empty() || !ts::HaveLibreOffice()) GTEST_SKIP() << "corpus or LibreOffice missing";
    auto dir = ts::ScratchDir("edited-lo");
    auto csv = ts::LibreOfficeConvertAll({EditedCorpusBook(), EditedNewBook()}, "csv", dir);
    ASSERT_FALSE(csv[0].empty());
    ASSERT_FALSE(csv[1].empty());
    // LibreOffice calculates the formula the engine left without a value, over the moved rows.
    EXPECT_EQ(ReadFile(csv[1]),
              "Item,Amount\nItem 1,3\nLate item,100\nItem 3,6\nItem 4,7.5\nItem 5,9\n,125.50\n");
    EXPECT_NE(ReadFile(csv[0]).find("inserted row,"), std::string::npos);
}

}  // namespace
