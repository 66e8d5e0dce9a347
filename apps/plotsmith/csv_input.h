#pragma once
// New table rows from CSV, as update-table takes them: UTF-8, a header row naming the columns, then
// one record per row with as many fields. A field that is a number in full becomes a number, an
// empty one a blank cell, anything else text.
#include <string>
#include <vector>

#include "host/variant.h"

struct CsvTable {
    std::vector<std::string> columns;
    std::vector<std::vector<host::Variant>> rows;
};

// Raises session::Refused naming the source, the line and where it can the column of what it can't take.
CsvTable ReadCsv(const std::string& text, const std::string& source);
