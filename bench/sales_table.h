#pragma once
// The generated sales table that bench/scale-charts.xml draws from: a range table on sheet Sales
// (a title, a second header row, the headings, then the data rows) with three label columns and
// five number columns, named VEX_TableRange1. Shared by the scale benchmark, which writes it at
// any size, and the test that keeps refresh results from changing unnoticed.
#include <string>

#include "host/variant.h"
#include "host/workbook.h"

namespace salestable {

inline constexpr long kHeaderRows = 3;
inline constexpr long kColumns = 8;
inline const char* const kHeadings[kColumns] = {"Region", "Product", "Quarter", "Amount",
                                                "Units",  "Price",   "Cost",    "Margin"};
inline const char* const kTitle = "Sales by region";
inline const char* const kSubtitle = "All figures in thousands";

// Data row i (from 0), column col (from 1). Regions, products and quarters vary at different
// paces, so that every pivot has more than one cell per row and column.
inline host::Variant Cell(long i, long col) {
    static const char* const regions[] = {"North", "South", "East", "West"};
    switch (col) {
        case 1: return regions[i % 4];
        case 2: return "Product " + std::to_string((i * 7) % 50);
        case 3: {
            long q = (i / 3) % 8;
            return "Q" + std::to_string(2025 + q / 4) + "-" + std::to_string(q % 4 + 1);
        }
        default: return static_cast<double>((i * col) % 9973) / 7;
    }
}

inline std::string TableAddress(long rows) { return "=Sales!$A$1:$H$" + std::to_string(rows + kHeaderRows); }

// The table with `rows` data rows on `ws`, which is renamed Sales, and its name.
inline void Fill(host::Workbook& book, host::Worksheet& ws, long rows) {
    ws.SetName("Sales");
    ws.Cells(1, 1)->SetValue(kTitle);
    ws.Cells(2, 1)->SetValue(kSubtitle);
    for (long col = 1; col <= kColumns; ++col) ws.Cells(kHeaderRows, col)->SetValue(kHeadings[col - 1]);
    for (long i = 0; i < rows; ++i)
        for (long col = 1; col <= kColumns; ++col) ws.Cells(kHeaderRows + 1 + i, col)->SetValue(Cell(i, col));
    book.Names()->Add("VEX_TableRange1", TableAddress(rows));
}

}  // namespace salestable
