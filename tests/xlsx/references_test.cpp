#include "xlsx/references.h"

#include <gtest/gtest.h>

namespace {

using xlsx::CellRef;
using xlsx::RowShift;
using xlsx::ShiftFormulaRows;

struct ShiftCase { const char* formula; const char* host; RowShift shift; const char* expected; };

void CheckShifts(const std::vector<ShiftCase>& cases) {
    for (const ShiftCase& c : cases) {
        EXPECT_EQ(ShiftFormulaRows(c.formula, c.host, c.shift), c.expected)
            << c.formula << " on " << c.host << ", " << c.shift.count << " rows at " << c.shift.at << " of "
            << c.shift.sheet;
    }
}

const RowShift kInsert2At5{"Sheet1", 5, 2};
const RowShift kDelete5To6{"Sheet1", 5, -2};

TEST(ShiftFormulaRows, InsertMovesReferencesAtAndBelowAndGrowsSpanningRanges) {
    CheckShifts({
        {"A1+A4+A5+B100", "Sheet1", kInsert2At5, "A1+A4+A7+B102"},
        {"$A$4+$A$5+A$5+$B6", "Sheet1", kInsert2At5, "$A$4+$A$7+A$7+$B8"},
        {"SUM(A1:A10)+SUM(A5:B9)+SUM(A1:A4)", "Sheet1", kInsert2At5, "SUM(A1:A12)+SUM(A7:B11)+SUM(A1:A4)"},
        {"SUM(A10:A1)", "Sheet1", kInsert2At5, "SUM(A12:A1)"},
        {"SUM(5:6)+SUM($3:$5)+SUM(1:4)+SUM(A:C)+COUNT($B:$B)", "Sheet1", kInsert2At5,
         "SUM(7:8)+SUM($3:$7)+SUM(1:4)+SUM(A:C)+COUNT($B:$B)"},
        // Function names and defined names that contain a cell address stay; TAX2019 is a cell.
        {"LOG10(A5)+ATAN2(B5,C5)+A1B+TAX2019", "Sheet1", kInsert2At5, "LOG10(A7)+ATAN2(B7,C7)+A1B+TAX2021"},
        {"_xlfn.XLOOKUP(A5,B:B,C1:C9)+_xlfn._xlws.SORT(D5:D6)", "Sheet1", kInsert2At5,
         "_xlfn.XLOOKUP(A7,B:B,C1:C11)+_xlfn._xlws.SORT(D7:D8)"},
        {"\"A5\"&A5&\"say \"\"B5\"\" 'Sheet1'!A5\"&B5", "Sheet1", kInsert2At5,
         "\"A5\"&A7&\"say \"\"B5\"\" 'Sheet1'!A5\"&B7"},
        {"IF(ISERROR(A5),#N/A,#REF!)&#DIV/0!&1.5E+5*A5%", "Sheet1", kInsert2At5,
         "IF(ISERROR(A7),#N/A,#REF!)&#DIV/0!&1.5E+5*A7%"},
        {"{1,2;3,\"A5}\"}+Table1[Col5]+Table1[[#This Row],['[A5']]]+[@B5]+A5", "Sheet1", kInsert2At5,
         "{1,2;3,\"A5}\"}+Table1[Col5]+Table1[[#This Row],['[A5']]]+[@B5]+A7"},
        {"TRUE+a5+Sheet1!A1:Sheet1!A5", "Sheet1", kInsert2At5, "TRUE+a7+Sheet1!A1:Sheet1!A7"},
        // What a deleted sheet left belongs to no sheet.
        {"#REF!A5+#REF!A1:B9+#REF!+A5", "Sheet1", kInsert2At5, "#REF!A5+#REF!A1:B9+#REF!+A7"},
    });
}

TEST(ShiftFormulaRows, OnlyReferencesToTheShiftedSheetMove) {
    CheckShifts({
        {"A5+Sheet2!A5+sheet1!A5+SHEET1!B5:C6", "Sheet1", kInsert2At5, "A7+Sheet2!A5+sheet1!A7+SHEET1!B7:C8"},
        {"A5+Sheet1!A5", "Sheet2", kInsert2At5, "A5+Sheet1!A7"},
        {"'My ''Sheet'''!A5+'My Sheet'!A5+A5", "Other", {"my 'sheet'", 5, 2},
         "'My ''Sheet'''!A7+'My Sheet'!A5+A5"},
        {"'Sheet1'!A5*'It''s'!B9", "x", {"It's", 5, -2}, "'Sheet1'!A5*'It''s'!B7"},
        // External, 3-D over several sheets: left as they are; a 3-D reference to one sheet moves.
        {"[1]Sheet1!A5+'[2]Sheet1'!A5+SUM(Sheet1:Sheet3!A5)+SUM(Sheet1:Sheet1!A5)+[1]!Total", "Sheet1",
         kInsert2At5, "[1]Sheet1!A5+'[2]Sheet1'!A5+SUM(Sheet1:Sheet3!A5)+SUM(Sheet1:Sheet1!A7)+[1]!Total"},
        // Defined names: always qualified; an unqualified address there belongs to no sheet.
        {"Sheet1!$A$1:$C$10", "", kInsert2At5, "Sheet1!$A$1:$C$12"},
        {"'My Sheet'!$A$5", "", {"MY SHEET", 5, 2}, "'My Sheet'!$A$7"},
        {"OFFSET(Sheet1!$A$5,0,0,COUNTA(Sheet1!$A:$A),1)+A5", "", kInsert2At5,
         "OFFSET(Sheet1!$A$7,0,0,COUNTA(Sheet1!$A:$A),1)+A5"},
        {"Sheet1!Total+Sheet1!#REF!", "", kInsert2At5, "Sheet1!Total+Sheet1!#REF!"},
        // Case is ignored for every letter, not only ASCII.
        {"'DONNÉES'!A5+Données!A5+Ölpreis!A5", "", {"données", 5, 2}, "'DONNÉES'!A7+Données!A7+Ölpreis!A5"},
    });
}

TEST(ShiftFormulaRows, DeleteMovesUpShrinksAndLosesReferences) {
    CheckShifts({
        {"A4+A5+$A$6+A7", "Sheet1", kDelete5To6, "A4+#REF!+#REF!+A5"},
        {"Sheet1!A5+'Sheet1'!A6+Sheet1!A9", "Sheet2", kDelete5To6, "Sheet1!#REF!+'Sheet1'!#REF!+Sheet1!A7"},
        {"SUM(A1:A10)+SUM(A5:A10)+SUM(A1:A6)+SUM(A1:A4)", "Sheet1", kDelete5To6,
         "SUM(A1:A8)+SUM(A5:A8)+SUM(A1:A4)+SUM(A1:A4)"},
        {"SUM(A5:B6)+SUM(Sheet1!$A$5:$B$6)", "Sheet1", kDelete5To6, "SUM(#REF!)+SUM(Sheet1!#REF!)"},
        {"SUM(5:6)+SUM(4:7)+SUM($6:$9)+SUM(A:A)", "Sheet1", kDelete5To6, "SUM(#REF!)+SUM(4:5)+SUM($5:$7)+SUM(A:A)"},
        {"A1", "Sheet1", {"Sheet1", 1, -1}, "#REF!"},
        {"Sheet1!$A$1:$A$3", "", {"Sheet1", 1, -1}, "Sheet1!$A$1:$A$2"},
    });
}

TEST(ShiftFormulaRows, ReferencesPushedOffTheSheetAreLost) {
    CheckShifts({
        {"A1048575+Sheet1!B1048576+A1048574", "Sheet1", kInsert2At5, "#REF!+Sheet1!#REF!+A1048576"},
        {"SUM(A2:A1048576)+SUM(1:1048576)+SUM(A1:B1048576)", "Sheet1", {"Sheet1", 1, 1},
         "SUM(A3:A1048576)+SUM(1:1048576)+SUM(A1:B1048576)"},
        {"SUM(1:1048576)+SUM($A$1:$A$1048576)", "Sheet1", {"Sheet1", 1, -3}, "SUM(1:1048576)+SUM($A$1:$A$1048576)"},
    });
}

TEST(ShiftFormulaRows, SheetNamesQuotedAsWrittenAreFound) {
    for (const char* name : {"Sheet1", "My Sheet", "O'Neil", "A1", "R2C3", "2019", "Données", "a-b"}) {
        std::string prefix = xlsx::QuoteSheetName(name);
        EXPECT_EQ(ShiftFormulaRows(prefix + "!A5:B5+" + prefix + "!C9", "", {name, 1, 3}),
                  prefix + "!A8:B8+" + prefix + "!C12")
            << name;
    }
    EXPECT_EQ(xlsx::QuoteSheetName("Sheet1"), "Sheet1");
    EXPECT_EQ(xlsx::QuoteSheetName("Données"), "Données");
    EXPECT_EQ(xlsx::QuoteSheetName("O'Neil"), "'O''Neil'");
    EXPECT_EQ(xlsx::QuoteSheetName("R1C1"), "'R1C1'");
    EXPECT_EQ(xlsx::QuoteSheetName("XFD1048576"), "'XFD1048576'");
    EXPECT_EQ(xlsx::QuoteSheetName("XFE1"), "XFE1");
}

TEST(ShiftFormulaColumns, InsertAndDeleteMoveColumnsOfOneSheet) {
    struct Case { const char* formula; xlsx::ColumnShift shift; const char* expected; };
    const Case cases[] = {
        {"A1+C1+$D$5+SUM(B1:D9)+SUM(C:D)+SUM(1:3)+Sheet2!C1", {"Sheet1", 3, 2},
         "A1+E1+$F$5+SUM(B1:F9)+SUM(E:F)+SUM(1:3)+Sheet2!C1"},
        {"B1+C1+E1+SUM(A1:E1)+SUM(C1:D9)+Sheet1!$D:$D", {"Sheet1", 3, -2}, "B1+#REF!+C1+SUM(A1:C1)+SUM(#REF!)+Sheet1!#REF!"},
        {"SUM(A1:XFD1)+XFC1+SUM(B1:XFD1)", {"Sheet1", 1, 2}, "SUM(A1:XFD1)+#REF!+SUM(D1:XFD1)"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(xlsx::ShiftFormulaColumns(c.formula, "Sheet1", c.shift), c.expected) << c.formula;
}

TEST(RenameSheetInFormula, RequalifiesEveryReferenceToTheSheet) {
    struct Case { const char* formula; const char* oldName; const char* newName; const char* expected; };
    const Case cases[] = {
        {"Sheet1!A1+sheet1!B2:C3+'Sheet1'!$D$4+Sheet2!A1+A1+Sheet10!A1", "SHEET1", "Data",
         "Data!A1+Data!B2:C3+Data!$D$4+Sheet2!A1+A1+Sheet10!A1"},
        {"SUM(Sheet1!A1:Sheet1!B2)+Sheet1!Total+Sheet1!#REF!+Sheet1!C:C", "Sheet1", "My Sheet",
         "SUM('My Sheet'!A1:'My Sheet'!B2)+'My Sheet'!Total+'My Sheet'!#REF!+'My Sheet'!C:C"},
        {"'O''Neil'!A1&\"'O''Neil'!A1\"&'My Sheet'!A1", "o'neil", "Sheet1",
         "Sheet1!A1&\"'O''Neil'!A1\"&'My Sheet'!A1"},
        {"=SERIES(Sheet1!$B$1,Sheet1!$A$2:$A$5,Sheet1!$B$2:$B$5,1)", "Sheet1", "2019",
         "=SERIES('2019'!$B$1,'2019'!$A$2:$A$5,'2019'!$B$2:$B$5,1)"},
        {"Sheet1!A1+Sheet1!B2", "Sheet1", "R1C1", "'R1C1'!A1+'R1C1'!B2"},
        // Either end of a 3-D span; other workbooks' sheets are not this one.
        {"SUM(Sheet1:Sheet3!A1)+SUM('Sheet 0:Sheet1'!A1)+[1]Sheet1!A1+'[Book.xlsx]Sheet1'!A1", "Sheet1", "Data",
         "SUM(Data:Sheet3!A1)+SUM('Sheet 0:Data'!A1)+[1]Sheet1!A1+'[Book.xlsx]Sheet1'!A1"},
        {"SUM(Sheet1:Sheet3!A1)", "sheet3", "It's", "SUM('Sheet1:It''s'!A1)"},
        {"'DONNÉES'!A1+Données!B2+Ölpreis!C3", "données", "Data", "Data!A1+Data!B2+Ölpreis!C3"},
        {"Лист1!A1*2", "ЛИСТ1", "Итоги", "Итоги!A1*2"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(xlsx::RenameSheetInFormula(c.formula, c.oldName, c.newName), c.expected) << c.formula;
}

TEST(BreakSheetInFormula, ReferencesToADeletedSheetBecomeRefErrors) {
    struct Case { const char* formula; const char* sheet; const char* expected; };
    const Case cases[] = {
        {"SUM(Sheet1!A1:B2)+Sheet2!A1+A1+\"Sheet1!A1\"", "sheet1", "SUM(#REF!A1:B2)+Sheet2!A1+A1+\"Sheet1!A1\""},
        {"'My Sheet'!$A$1:'My Sheet'!$B$2+'my sheet'!C:C+'My Sheet'!3:3", "MY SHEET", "#REF!$A$1:$B$2+#REF!C:C+#REF!3:3"},
        {"Sheet1!Total*2+Sheet1!#REF!+Sheet10!A1", "Sheet1", "#REF!*2+#REF!+Sheet10!A1"},
        {"SUM(Sheet1:Sheet3!A1)+SUM(Sheet0:Sheet1!A1)+[1]Sheet1!A1", "Sheet1", "SUM(#REF!A1)+SUM(#REF!A1)+[1]Sheet1!A1"},
        {"=SERIES(,'Données'!$A$2:$A$5,DONNÉES!$B$2:$B$5,1)", "données", "=SERIES(,#REF!$A$2:$A$5,#REF!$B$2:$B$5,1)"},
    };
    for (const Case& c : cases) EXPECT_EQ(xlsx::BreakSheetInFormula(c.formula, c.sheet), c.expected) << c.formula;
}

TEST(TranslateFormula, RelativePartsMoveAndThoseOffTheSheetAreLost) {
    struct Case { const char* formula; long dRows; long dCols; const char* expected; };
    const Case cases[] = {
        {"A1*2+$A$1+A$1+$A1+Z1", 2, 1, "B3*2+$A$1+B$1+$A3+AA3"},
        {"SUM(A1:B2)+SUM($A$1:A1)+SUM(A:A)+SUM($B:C)+SUM(1:2)+SUM($1:2)", 1, 1,
         "SUM(B2:C3)+SUM($A$1:B2)+SUM(B:B)+SUM($B:D)+SUM(2:3)+SUM($1:3)"},
        {"Sheet2!A1+'My Sheet'!B2:C3+[1]Sheet1!A1+Sheet1!A1:Sheet1!A2", 1, 0,
         "Sheet2!A2+'My Sheet'!B3:C4+[1]Sheet1!A2+Sheet1!A2:Sheet1!A3"},
        {"IF(A1>0,\"A1\",LOG10(A1))+a1+Table1[A1]+#REF!A1", 1, 0, "IF(A2>0,\"A1\",LOG10(A2))+a2+Table1[A1]+#REF!A1"},
        {"A1+B2+SUM(A1:B2)+Sheet2!XFD1", -1, 0, "#REF!+B1+SUM(#REF!)+Sheet2!#REF!"},
        {"XFD1+A1048576+SUM(A:A)+SUM(1:1)", 1, 1, "#REF!+#REF!+SUM(B:B)+SUM(2:2)"},
        {"A1+B1", 0, 0, "A1+B1"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(xlsx::TranslateFormula(c.formula, c.dRows, c.dCols), c.expected)
            << c.formula << " by " << c.dRows << ", " << c.dCols;
}

TEST(CellAddresses, ColumnsAndCellsRoundTrip) {
    for (long col = 1; col <= 16384; ++col) ASSERT_EQ(xlsx::ColumnNumber(xlsx::ColumnLetters(col)), col);
    EXPECT_EQ(xlsx::ColumnLetters(28), "AB");
    EXPECT_EQ(xlsx::ColumnLetters(16384), "XFD");
    EXPECT_EQ(xlsx::ColumnLetters(0), "");
    EXPECT_EQ(xlsx::ColumnNumber("XFE"), 0);
    EXPECT_EQ(xlsx::ColumnNumber("A1"), 0);
    EXPECT_EQ(xlsx::ColumnNumber(""), 0);

    for (const char* text : {"B7", "$B$7", "B$7", "$B7", "b7"}) {
        auto ref = xlsx::ParseCellRef(text);
        ASSERT_TRUE(ref) << text;
        EXPECT_EQ(ref->row, 7);
        EXPECT_EQ(ref->col, 2);
    }
    for (const char* text : {"", "B", "7", "B0", "B07", "B1048577", "XFE1", "B7:C8", "$$B7", "B7 ", "Sheet1!B7"})
        EXPECT_FALSE(xlsx::ParseCellRef(text)) << text;
    EXPECT_EQ(xlsx::CellAddress(7, 2), "B7");
    EXPECT_EQ(xlsx::CellAddress(1048576, 16384, true), "$XFD$1048576");
}

TEST(R1C1ToA1, ConvertsAbsoluteAndRelativeParts) {
    struct Case {
        const char* text;
        CellRef base;
        const char* expected;  // nullptr: not R1C1
    };
    const Case cases[] = {
        {"=Sheet1!R2C1:R5C1", {1, 1}, "=Sheet1!$A$2:$A$5"},
        {"Sheet1!R2C1", {1, 1}, "Sheet1!$A$2"},
        {"=VEX_ChartData!R1C1:R1C1", {1, 1}, "=VEX_ChartData!$A$1:$A$1"},
        {"='My ''Sheet'''!R3C28", {1, 1}, "='My ''Sheet'''!$AB$3"},
        {"=Sheet1!R[1]C", {1, 1}, "=Sheet1!A2"},
        {"=Sheet1!R[1]C", {4, 3}, "=Sheet1!C5"},
        {"R[-1]C[2]:RC[3]", {5, 1}, "C4:D5"},
        {"R2C[1]", {1, 1}, "B$2"},
        {"R[-1]C", {1, 1}, "A1048576"},
        {"=(Sheet1!R1C1,Sheet1!R3C1)", {1, 1}, "=(Sheet1!$A$1,Sheet1!$A$3)"},
        {"Sheet1!R[1]", {1, 1}, "Sheet1!2:2"},
        {"Sheet1!C[1]:C[2]", {1, 1}, "Sheet1!B:C"},
        // Texts that are A1 (or nothing): R2, C3 and R1:R5 read as cells of columns R and C.
        {"=Sheet1!$A$1", {1, 1}, nullptr},
        {"Sheet1!A1:B2", {1, 1}, nullptr},
        {"=Sheet1!R2", {1, 1}, nullptr},
        {"R1:R5", {1, 1}, nullptr},
        {"C3", {1, 1}, nullptr},
        {"", {1, 1}, nullptr},
        {"=", {1, 1}, nullptr},
        {"Total", {1, 1}, nullptr},
        {"R0C1", {1, 1}, nullptr},
        {"R1C16385", {1, 1}, nullptr},
        {"R1C1:R2", {1, 1}, nullptr},
        {"R1C1X", {1, 1}, nullptr},
    };
    for (const Case& c : cases) {
        auto a1 = xlsx::R1C1ToA1(c.text, c.base);
        if (c.expected)
            EXPECT_EQ(a1.value_or("(nullopt)"), c.expected) << c.text;
        else
            EXPECT_FALSE(a1) << c.text << " gave " << *a1;
    }
}

}  // namespace
