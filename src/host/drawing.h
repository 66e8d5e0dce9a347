#pragma once
// The application's object model for drawings on a sheet or inside a chart: shapes and their
// collections, text frames and character ranges, the drawing fill, line and colour objects, and
// the chart objects that frame embedded charts. Getters carry the member's name, setters "Set"
// and the name. Distances are points. Tri-state members (Visible, LockAspectRatio, WordWrap ...)
// are longs of MsoTriState and read msoTrue (-1) or msoFalse (0); written, any value but msoFalse
// counts as true, since a C++ true arrives as 1 (msoCTrue).
#include <string>
#include <vector>

#include "host/error.h"
#include "host/format.h"
#include "host/fwd.h"
#include "host/variant.h"

namespace host {

// ---------------------------------------------------------------- colours, fills, lines

// A drawing colour. Also stands for the chart colour object that ChartFillFormat's ForeColor and
// BackColor answer, which has RGB, SchemeColor and Type only. Writing one way of giving the colour
// (RGB, SchemeColor, ObjectThemeColor) replaces the others, and Type tells which one holds.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-parameter"  // of the default bodies
class ColorFormat {
public:
    virtual ~ColorFormat() = default;
    virtual long RGB() { Unavailable(this, __func__); }
    virtual void SetRGB(long rgb) { Unavailable(this, __func__); }
    virtual long SchemeColor() { Unavailable(this, __func__); }  // an index into the workbook palette
    virtual void SetSchemeColor(long index) { Unavailable(this, __func__); }
    virtual long ObjectThemeColor() { Unavailable(this, __func__); }  // msoThemeColor..., msoNotThemeColor
    virtual void SetObjectThemeColor(long v) { Unavailable(this, __func__); }
    virtual double TintAndShade() { Unavailable(this, __func__); }  // -1 darkest .. 1 lightest
    virtual void SetTintAndShade(double v) { Unavailable(this, __func__); }
    virtual double Brightness() { Unavailable(this, __func__); }
    virtual void SetBrightness(double v) { Unavailable(this, __func__); }
    virtual long Type() { Unavailable(this, __func__); }  // msoColorTypeRGB, msoColorTypeScheme ...
};
#pragma GCC diagnostic pop

class FillFormat {
public:
    virtual ~FillFormat() = default;
    virtual Ref<host::ColorFormat> ForeColor() = 0;
    virtual Ref<host::ColorFormat> BackColor() = 0;  // the second colour of patterns and gradients
    virtual long Visible() = 0;
    virtual void SetVisible(long v) = 0;
    virtual double Transparency() = 0;  // 0 opaque .. 1 clear
    virtual void SetTransparency(double v) = 0;
    virtual long Type() = 0;     // msoFillSolid, msoFillPatterned, msoFillGradient ...
    virtual long Pattern() = 0;  // msoPattern...; meaningful for a patterned fill
    virtual long GradientStyle() = 0;
    virtual void Solid() = 0;
    virtual void Patterned(long pattern) = 0;
    virtual void OneColorGradient(long style, long variant, double degree) = 0;
    virtual void TwoColorGradient(long style, long variant) = 0;
    virtual void PresetGradient(long style, long variant, long presetGradientType) = 0;
};

class LineFormat {
public:
    virtual ~LineFormat() = default;
    virtual Ref<host::ColorFormat> ForeColor() = 0;
    virtual Ref<host::ColorFormat> BackColor() = 0;  // the second colour of a patterned line
    virtual long Visible() = 0;
    virtual void SetVisible(long v) = 0;
    virtual double Weight() = 0;  // points
    virtual void SetWeight(double v) = 0;
    virtual long DashStyle() = 0;  // msoLineSolid, msoLineDash ...
    virtual void SetDashStyle(long v) = 0;
    virtual long Style() = 0;  // msoLineSingle, msoLineThinThin ...
    virtual void SetStyle(long v) = 0;
    virtual double Transparency() = 0;
    virtual void SetTransparency(double v) = 0;
    virtual long Pattern() = 0;
    virtual void SetPattern(long v) = 0;
};

// ---------------------------------------------------------------- text

// A run of characters of a text frame or a chart text. Start is 1-based; Length left out runs to
// the end of the text, and Start and Length both left out take the whole text. A range past the
// end is empty: its Text is "".
class Characters {
public:
    virtual ~Characters() = default;
    virtual std::string Text() = 0;
    virtual void SetText(const std::string& v) = 0;  // replaces the run; the rest of the text stays
    virtual std::string Caption() = 0;
    virtual void SetCaption(const std::string& v) = 0;
    virtual long Count() = 0;  // characters in the run
    virtual Ref<host::Font> Font() = 0;  // Null members where the run has mixed formats
    // Writes text in place of the run's characters in the run's format; on an empty run past the
    // end of the text, appends.
    virtual void Insert(const std::string& text) = 0;
    virtual void Delete() = 0;
};

// The text of a shape as the application's own text frame shows it.
class TextFrame {
public:
    virtual ~TextFrame() = default;
    virtual Ref<host::Characters> Characters(const Variant& start = {}, const Variant& length = {}) = 0;
    virtual bool AutoSize() = 0;  // the shape follows its text
    virtual void SetAutoSize(bool v) = 0;
    virtual long HorizontalAlignment() = 0;  // xlHAlignLeft, xlHAlignCenter ...
    virtual void SetHorizontalAlignment(long v) = 0;
    virtual long VerticalAlignment() = 0;  // xlVAlignTop, xlVAlignCenter ...
    virtual void SetVerticalAlignment(long v) = 0;
    virtual long Orientation() = 0;  // msoTextOrientationHorizontal, msoTextOrientationUpward ...
    virtual void SetOrientation(long v) = 0;
    virtual long ReadingOrder() = 0;
    virtual void SetReadingOrder(long v) = 0;
    virtual long HorizontalOverflow() = 0;
    virtual void SetHorizontalOverflow(long v) = 0;
    virtual long VerticalOverflow() = 0;
    virtual void SetVerticalOverflow(long v) = 0;
    virtual double MarginLeft() = 0;
    virtual void SetMarginLeft(double v) = 0;
    virtual double MarginRight() = 0;
    virtual void SetMarginRight(double v) = 0;
    virtual double MarginTop() = 0;
    virtual void SetMarginTop(double v) = 0;
    virtual double MarginBottom() = 0;
    virtual void SetMarginBottom(double v) = 0;
    virtual bool AutoMargins() = 0;  // writing a margin turns this off
    virtual void SetAutoMargins(bool v) = 0;
};

// The Office drawing font of a text range.
class Font2 {
public:
    virtual ~Font2() = default;
    virtual std::string Name() = 0;
    virtual void SetName(const std::string& v) = 0;
    virtual double Size() = 0;
    virtual void SetSize(double v) = 0;
    virtual long Bold() = 0;  // tri-state; msoTriStateMixed over mixed runs
    virtual void SetBold(long v) = 0;
    virtual long Italic() = 0;
    virtual void SetItalic(long v) = 0;
    virtual long UnderlineStyle() = 0;  // MsoTextUnderlineType
    virtual void SetUnderlineStyle(long v) = 0;
    virtual Ref<host::FillFormat> Fill() = 0;  // the text colour is Fill.ForeColor
};

// A run of text of a TextFrame2; positions as in Characters.
class TextRange2 {
public:
    virtual ~TextRange2() = default;
    virtual std::string Text() = 0;
    virtual void SetText(const std::string& v) = 0;
    virtual long Start() = 0;
    virtual long Length() = 0;
    virtual long Count() = 0;
    virtual Ref<host::Font2> Font() = 0;
    virtual Ref<host::TextRange2> Characters(const Variant& start = {}, const Variant& length = {}) = 0;
    virtual Ref<host::TextRange2> Paragraphs(const Variant& start = {}, const Variant& length = {}) = 0;
    virtual Ref<host::TextRange2> InsertAfter(const std::string& text) = 0;   // the inserted run
    virtual Ref<host::TextRange2> InsertBefore(const std::string& text) = 0;
    virtual void Delete() = 0;
};

// The text of a shape through the Office drawing layer: the same text as TextFrame, other members.
class TextFrame2 {
public:
    virtual ~TextFrame2() = default;
    virtual Ref<host::TextRange2> TextRange() = 0;
    virtual long HasText() = 0;
    virtual long WordWrap() = 0;
    virtual void SetWordWrap(long v) = 0;
    virtual long AutoSize() = 0;  // msoAutoSizeNone, msoAutoSizeShapeToFitText ...
    virtual void SetAutoSize(long v) = 0;
    virtual long Orientation() = 0;
    virtual void SetOrientation(long v) = 0;
    virtual long VerticalAnchor() = 0;  // msoAnchorTop, msoAnchorMiddle ...
    virtual void SetVerticalAnchor(long v) = 0;
    virtual long HorizontalAnchor() = 0;
    virtual void SetHorizontalAnchor(long v) = 0;
    virtual double MarginLeft() = 0;
    virtual void SetMarginLeft(double v) = 0;
    virtual double MarginRight() = 0;
    virtual void SetMarginRight(double v) = 0;
    virtual double MarginTop() = 0;
    virtual void SetMarginTop(double v) = 0;
    virtual double MarginBottom() = 0;
    virtual void SetMarginBottom(double v) = 0;
    virtual void DeleteText() = 0;
};

// ---------------------------------------------------------------- shapes

// A drawing object on a worksheet or inside a chart: a chart frame, a text box, an auto shape, a
// picture, a group. Members that don't apply to the kind of shape (Chart of a text box,
// GroupItems of a rectangle, TextFrame of a picture) raise.
class Shape {
public:
    virtual ~Shape() = default;
    virtual std::string Name() = 0;
    virtual void SetName(const std::string& v) = 0;
    virtual std::string AlternativeText() = 0;
    virtual void SetAlternativeText(const std::string& v) = 0;
    virtual long Type() = 0;           // msoChart, msoTextBox, msoAutoShape, msoGroup, msoPicture ...
    virtual long AutoShapeType() = 0;  // msoShapeRectangle, msoShapeOval ...; of auto shapes
    virtual void SetAutoShapeType(long v) = 0;
    virtual long ID() = 0;  // unique on the sheet or chart

    // Position and size; Left and Top from the top left corner of the sheet or the chart area.
    virtual double Left() = 0;
    virtual void SetLeft(double v) = 0;
    virtual double Top() = 0;
    virtual void SetTop(double v) = 0;
    virtual double Width() = 0;  // with LockAspectRatio on, a new width scales the height too
    virtual void SetWidth(double v) = 0;
    virtual double Height() = 0;
    virtual void SetHeight(double v) = 0;
    virtual double Rotation() = 0;  // degrees clockwise
    virtual void SetRotation(double v) = 0;
    virtual long LockAspectRatio() = 0;
    virtual void SetLockAspectRatio(long v) = 0;
    virtual long Placement() = 0;  // xlMoveAndSize, xlMove, xlFreeFloating; sheet shapes only
    virtual void SetPlacement(long v) = 0;
    virtual Ref<host::Range> TopLeftCell() = 0;      // sheet shapes only
    virtual Ref<host::Range> BottomRightCell() = 0;
    virtual long Visible() = 0;
    virtual void SetVisible(long v) = 0;
    virtual long ZOrderPosition() = 0;  // 1 is the backmost
    virtual void ZOrder(long zOrderCmd) = 0;

    virtual Ref<host::TextFrame> TextFrame() = 0;
    virtual Ref<host::TextFrame2> TextFrame2() = 0;
    virtual Ref<host::FillFormat> Fill() = 0;
    virtual Ref<host::LineFormat> Line() = 0;
    virtual long HasChart() = 0;
    virtual Ref<host::Chart> Chart() = 0;  // of a chart frame
    virtual Ref<host::GroupShapes> GroupItems() = 0;  // of a group
    virtual Ref<host::ShapeRange> Ungroup() = 0;  // of a group: its former members
    virtual void Select(const Variant& replace = {}) = 0;
    virtual void Delete() = 0;  // a chart frame takes its chart with it
};

// Some shapes of one Shapes collection, in the order they were named. The Shape members act on
// the range as the application's do: reading one needs a range of exactly one shape, writing
// one goes to every shape of the range.
class ShapeRange : public Shape {
public:
    virtual long Count() = 0;
    virtual Ref<host::Shape> Item(long index) = 0;
    virtual Ref<host::Shape> Item(const std::string& name) = 0;
    virtual Ref<host::Shape> Group() = 0;  // the new group shape; the range's shapes become its items
};

// The shapes on a worksheet, or drawn inside a chart (Chart.Shapes), in Z order from the back.
// A name or index that isn't there raises.
class Shapes {
public:
    virtual ~Shapes() = default;
    virtual long Count() = 0;
    virtual Ref<host::Shape> Item(long index) = 0;
    virtual Ref<host::Shape> Item(const std::string& name) = 0;
    virtual Ref<host::ShapeRange> Range(const std::string& name) = 0;
    virtual Ref<host::ShapeRange> Range(const std::vector<std::string>& names) = 0;
    // orientation: msoTextOrientationHorizontal ...
    virtual Ref<host::Shape> AddTextbox(long orientation, double left, double top, double width,
                                        double height) = 0;
    // type: msoShapeRectangle, msoShapeOval ...
    virtual Ref<host::Shape> AddShape(long type, double left, double top, double width,
                                      double height) = 0;
    // A chart frame with an empty chart; sheet shapes only. Left out, the type is the default
    // chart type and the place the application's default.
    virtual Ref<host::Shape> AddChart(const Variant& type = {}, const Variant& left = {},
                                      const Variant& top = {}, const Variant& width = {},
                                      const Variant& height = {}) = 0;
};

// The members of a group shape.
class GroupShapes {
public:
    virtual ~GroupShapes() = default;
    virtual long Count() = 0;
    virtual Ref<host::Shape> Item(long index) = 0;
    virtual Ref<host::Shape> Item(const std::string& name) = 0;
    virtual Ref<host::ShapeRange> Range(const std::vector<std::string>& names) = 0;
};

// ---------------------------------------------------------------- chart objects

// The frame of a chart embedded in a worksheet: the same drawing object as the Shape of the same
// name, seen from the chart side.
class ChartObject {
public:
    virtual ~ChartObject() = default;
    virtual std::string Name() = 0;
    virtual void SetName(const std::string& v) = 0;
    virtual Ref<host::Chart> Chart() = 0;
    virtual Ref<host::ShapeRange> ShapeRange() = 0;  // the frame's shape, as a range of one
    virtual long Index() = 0;  // position in ChartObjects, 1-based
    virtual double Left() = 0;
    virtual void SetLeft(double v) = 0;
    virtual double Top() = 0;
    virtual void SetTop(double v) = 0;
    virtual double Width() = 0;
    virtual void SetWidth(double v) = 0;
    virtual double Height() = 0;
    virtual void SetHeight(double v) = 0;
    virtual Ref<host::Range> TopLeftCell() = 0;
    virtual Ref<host::Range> BottomRightCell() = 0;
    virtual Variant Placement() = 0;  // xlMoveAndSize, xlMove, xlFreeFloating
    virtual void SetPlacement(const Variant& v) = 0;
    virtual bool Visible() = 0;
    virtual void SetVisible(bool v) = 0;
    virtual long ZOrder() = 0;  // position in the Z order, 1 is the backmost
    virtual void BringToFront() = 0;
    virtual void SendToBack() = 0;
    virtual bool RoundedCorners() = 0;
    virtual void SetRoundedCorners(bool v) = 0;
    virtual bool Shadow() = 0;
    virtual void SetShadow(bool v) = 0;
    virtual bool Locked() = 0;
    virtual void SetLocked(bool v) = 0;
    virtual bool PrintObject() = 0;
    virtual void SetPrintObject(bool v) = 0;
    virtual Ref<host::Border> Border() = 0;
    virtual Ref<host::Interior> Interior() = 0;
    virtual void Activate() = 0;
    virtual void Select(const Variant& replace = {}) = 0;
    virtual void Delete() = 0;
};

// The chart frames of one worksheet, in Z order.
class ChartObjects {
public:
    virtual ~ChartObjects() = default;
    virtual long Count() = 0;
    virtual Ref<host::ChartObject> Item(long index) = 0;
    virtual Ref<host::ChartObject> Item(const std::string& name) = 0;
    // A frame holding an empty chart, named as the application names new frames ("Chart 1" ...).
    virtual Ref<host::ChartObject> Add(double left, double top, double width, double height) = 0;
    virtual void Delete() = 0;  // all of them
};

}  // namespace host
