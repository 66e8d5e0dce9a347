#pragma once
// The object model of chart parts (xl/charts/chartN.xml), handed out by chart objects on
// worksheets and by chart sheets.
#include <functional>
#include <memory>
#include <string>

#include "host/chart.h"

namespace xlsx {

class Book;

// The chart of one chart part. `frame` is the chart object that holds it (null for a chart sheet).
std::shared_ptr<host::Chart> MakeChart(Book& book, const std::string& part, std::weak_ptr<host::ChartObject> frame);

// Adds a new chart part as the application's ChartObjects.Add makes one (a clustered column
// chart without series) and answers its part name. The caller relates it to its drawing.
std::string NewChartPart(Book& book);

// Applies fn to every reference text (c:f) of every chart part: rows moved, sheets renamed or deleted.
void RewriteChartFormulas(Book& book, const std::function<std::string(const std::string&)>& fn);

}  // namespace xlsx
