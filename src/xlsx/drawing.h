#pragma once
// Drawings (xl/drawings/drawingN.xml): the shapes of a sheet (spreadsheetDrawing) or drawn inside a
// chart (chartDrawing, the chart's user shapes), read from and edited in the drawing part's DOM,
// which stays the one truth. Not for use outside src/xlsx.
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

#include "host/drawing.h"
#include "host/error.h"
#include "xlsx/ooxml.h"

namespace xlsx {

class Book;
class SheetImpl;
class ChartObjectImpl;

inline constexpr double kEmuPerPoint = 12700;

// The a:xfrm that places a shape, a group or a graphic frame; an empty node when it has none.
pugi::xml_node Xfrm(pugi::xml_node el);

// That child, made (appended) when missing, with the parent's prefix.
pugi::xml_node KidMade(pugi::xml_node parent, std::string_view local);

// A shape of a drawing: the node under wsDr that holds it (an anchor or an mc:AlternateContent
// around one), its anchor, and its element (sp, pic, graphicFrame, grpSp, cxnSp), which for a
// member of a group lies inside the group.
struct ShapeNodes {
    pugi::xml_node top, anchor, el;
    explicit operator bool() const { return bool(el); }
};

struct PointRect {
    double x = 0, y = 0, w = 0, h = 0;
};

// The drawing of one sheet, owned by the sheet, or the user shapes of one chart part, whose
// places are fractions of the chart's size (`chartSize` answers it in points). Shapes hold it.
class Drawing {
public:
    explicit Drawing(SheetImpl& sheet);
    Drawing(Book& book, std::string chartPart, std::function<PointRect()> chartSize);

    // The sheet of a sheet's drawing; a chart's shapes have no cells under them.
    std::shared_ptr<SheetImpl> Sheet(const char* member);
    bool InChart() const { return !chartPart_.empty(); }
    Book& book() { return book_; }
    // The drawing part, "" while the sheet has none.
    const std::string& Part();
    pugi::xml_node Root(bool edit);  // wsDr; empty without a part
    // Makes the part, its relationship and the sheet's <drawing r:id> (the chart's <c:userShapes
    // r:id>) on first use.
    pugi::xml_node EnsureRoot();

    std::vector<ShapeNodes> TopShapes();  // Z order from the back
    // The holder and anchor of a shape element as they are now (grouping moves elements).
    ShapeNodes NodesOf(pugi::xml_node el);
    std::vector<ShapeNodes> Members(const ShapeNodes& group);
    ShapeNodes FindByName(const std::string& name);  // top-level first, then inside groups
    long NextId();

    // Adds an anchor made from XML with the prefixes xdr: and a: (renamed to the part's own); in a
    // chart, the shape of the sheet anchor goes into an anchor relative to the chart's size.
    ShapeNodes AddAnchor(const std::string& xml, const PointRect& r);
    // Puts top-level shapes into a new group, or a group's members back on the sheet.
    ShapeNodes Group(const std::vector<ShapeNodes>& members);
    std::vector<ShapeNodes> Ungroup(const ShapeNodes& group);
    // Removes a shape, with the parts only it used; the drawing part goes with its last shape.
    void Remove(const ShapeNodes& s);
    bool Alive(pugi::xml_node el) const { return !dead_.count(el.internal_object()); }

    PointRect Rect(const ShapeNodes& s);
    void SetRect(const ShapeNodes& s, const PointRect& r);
    long ZPosition(const ShapeNodes& s);
    void ZOrder(const ShapeNodes& s, long cmd);

    // Kind of a shape as the application reports it, OLE objects and controls told apart through
    // the sheet's oleObjects and controls.
    long TypeOf(const ShapeNodes& s);
    // OLE objects and controls keep their own parts and sheet markup.
    bool IsLegacyObject(const ShapeNodes& s);

    // The chart part of a chart frame, "" for other shapes.
    std::string ChartPart(const ShapeNodes& s);
    std::shared_ptr<ChartObjectImpl> Frame(const ShapeNodes& s);  // one object per frame

    // Sheet positions: the left edge of a 0-based column, the top of a 0-based row, and back.
    double ColX(long col0);
    double RowY(long row0);
    void XToCol(double x, long& col0, long& offEmu);
    void YToRow(double y, long& row0, long& offEmu);

    std::string xdr, a;  // prefixes in use in the part, with their colon

private:
    void Resolve();
    void Prefixes();
    PointRect AnchorRect(pugi::xml_node anchor);
    void WriteAnchor(pugi::xml_node anchor, const PointRect& r);
    void Bury(pugi::xml_node n);

    pugi::xml_node ContainerPart(bool edit);  // the sheet or chart part that names the drawing
    void ChartPrefixes(pugi::xml_node root);

    SheetImpl* sheet_ = nullptr;
    Book& book_;
    std::string chartPart_;
    std::function<PointRect()> chartSize_;
    bool resolved_ = false;
    std::string part_;
    std::set<const void*> dead_;  // elements of removed shapes, so stale handles raise
    std::map<const void*, std::shared_ptr<ChartObjectImpl>> frames_;
};

// Kind of a shape element as the application reports it (msoChart, msoTextBox ...).
long ShapeType(pugi::xml_node el);

// Parses the drawing of a sheet part or the user shapes of a chart part (and for a sheet, the
// charts it shows); raises PackageError for a part missing or damaged, or a shape placed beyond
// the sheet's limits.
void VerifyDrawing(Book& book, const std::string& owner, bool chart);

// ---------------------------------------------------------------- objects (drawing_*.cpp)

using DrawingPtr = std::shared_ptr<Drawing>;

std::shared_ptr<host::Shape> MakeShape(DrawingPtr drawing, const ShapeNodes& s);
// The shapes of a chart part, drawn inside the chart.
std::shared_ptr<host::Shapes> MakeShapes(DrawingPtr drawing);

// The text body of a shape (xdr:txBody), made on first write.
struct TextHost {
    DrawingPtr owner;  // keeps the drawing alive
    ShapeNodes s;
    Drawing& drawing();
    pugi::xml_node Body(bool make);
};
std::shared_ptr<host::TextFrame> MakeTextFrame(TextHost host);
std::shared_ptr<host::TextFrame2> MakeTextFrame2(TextHost host);

// A fill of a drawing without patterns and gradients yet: those members refuse, saying whose fill
// it is ("of a shape", "of text").
class PlainFill : public host::FillFormat {
public:
    long Pattern() override { Unbuilt("Pattern"); }
    long GradientStyle() override { Unbuilt("GradientStyle"); }
    void Patterned(long) override { Unbuilt("Patterned"); }
    void OneColorGradient(long, long, double) override { Unbuilt("OneColorGradient"); }
    void TwoColorGradient(long, long) override { Unbuilt("TwoColorGradient"); }
    void PresetGradient(long, long, long) override { Unbuilt("PresetGradient"); }

protected:
    explicit PlainFill(const char* of) : of_(of) {}

private:
    [[noreturn]] void Unbuilt(const char* member) { host::Unavailable(std::string("FillFormat.") + member + " " + of_); }
    const char* of_;
};

std::shared_ptr<host::FillFormat> MakeShapeFill(DrawingPtr drawing, const ShapeNodes& s);
std::shared_ptr<host::LineFormat> MakeShapeLine(DrawingPtr drawing, const ShapeNodes& s);

}  // namespace xlsx
