#pragma once
// Object references of the host object model. An automation reference is shared; Nothing is null.
#include <memory>

namespace host {

template <class T>
using Ref = std::shared_ptr<T>;

class Application;
class Workbook;
class Sheets;
class Sheet;
class Worksheets;
class Worksheet;
class Range;
class Names;
class Name;
class Window;
class Font;
class Interior;
class Border;
class Shapes;
class Shape;
class ShapeRange;
class GroupShapes;
class ChartObjects;
class ChartObject;
class Chart;
class ChartGroups;
class ChartArea;
class PlotArea;
class ChartTitle;
class Axis;
class Gridlines;
class AxisTitle;
class TickLabels;
class Legend;
class LegendEntries;
class LegendEntry;
class SeriesCollection;
class Series;
class DataLabels;
class DataLabel;
class Points;
class Point;
class ChartGroup;
class ChartFillFormat;
class ChartFormat;
class FillFormat;
class LineFormat;
class ColorFormat;
class TextFrame;
class TextFrame2;
class TextRange2;
class Font2;
class Characters;

}  // namespace host
