#pragma once
// The controls of a form: one class per kind over a common base. Getters carry the member's name,
// setters "Set" and the name. Setting a selection or a check state in code raises the same click
// event as the user's gesture, so page logic runs alike for both.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/variant.h"

namespace forms {

class Form;

// Raises a flag for the life of a scope and lowers it however the scope is left: the guard of
// handlers that must not run while code of their own form is busy.
class ScopedFlag {
public:
    explicit ScopedFlag(bool& flag) : flag_(flag) { flag_ = true; }
    ~ScopedFlag() { flag_ = false; }
    ScopedFlag(const ScopedFlag&) = delete;
    ScopedFlag& operator=(const ScopedFlag&) = delete;

private:
    bool& flag_;
};

// System colour indices and the plain white the pages use.
inline constexpr long vbButtonFace = 0x8000000F;
inline constexpr long vbInfoBackground = 0x80000018;
inline constexpr long vbWindowBackground = 0x80000005;
inline constexpr long vbWhite = 0xFFFFFF;

enum class Kind { TextBox, ComboBox, ListBox, CheckBox, OptionButton, CommandButton, Label, Frame, Image, Grid, ProgressBar, Timer };

struct FontAttributes {
    std::string Name = "Tahoma";
    double Size = 8;
    long Charset = 0;
    bool Bold = false;
};

// Error numbers the toolkit raises, as the dialog run-time numbers them.
namespace ctlerr {
inline constexpr long InvalidPropertyValue = 380;      // "Invalid property value"
inline constexpr long InvalidArrayIndex = 381;         // "Invalid property array index"
inline constexpr long TextReadOnly = 383;              // "'Text' property is read-only"
inline constexpr long AlreadyDisplayed = 400;          // "Form already displayed; can't show modally"
inline constexpr long ControlNotFound = 730;           // "Control not found"
}  // namespace ctlerr

class Control : public std::enable_shared_from_this<Control> {
public:
    Control(Form& form, Kind kind, std::string name, int index);
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    Kind kind() const { return kind_; }
    std::string TypeName() const;  // "TextBox", "ComboBox", ..., "VSFlexGrid" for the grid
    const std::string& Name() const { return name_; }
    int Index() const { return index_; }  // position in its option group or control array; -1 alone
    Form& Parent() const { return form_; }
    Control* Container() const { return container_; }  // a frame; nullptr for the form itself
    void SetContainer(Control* frame) { container_ = frame; }

    bool Enabled() const { return enabled_; }
    void SetEnabled(bool v) { enabled_ = v; }
    bool Visible() const { return visible_; }
    void SetVisible(bool v) { visible_ = v; }
    long BackColor() const { return backColor_; }
    void SetBackColor(long v) { backColor_ = v; }
    const std::string& Caption() const { return caption_; }
    void SetCaption(std::string v) { caption_ = std::move(v); }
    bool FontBold() const { return font_.Bold; }
    void SetFontBold(bool v) { font_.Bold = v; }
    long Appearance() const { return appearance_; }  // 1 three-dimensional, 0 flat
    void SetAppearance(long v) { appearance_ = v; }
    FontAttributes& Font() { return font_; }
    bool HasFont() const { return kind_ != Kind::Timer && kind_ != Kind::Image && kind_ != Kind::ProgressBar; }
    // Geometry in points. A front end that lays out by container takes Width and Height as the
    // least size of grids, lists, pictures and multi-line boxes, and places the rest itself.
    double Left = 0, Top = 0, Width = 0, Height = 0;
    long TabIndex = 0;  // the tab order; ties go by creation
    // For a frame on the form itself: the column of the page it stands in, from 0 at the left.
    int Column = 0;

    // Moves the focus here: the control that had it validates first. Raises 5 when the form is not
    // shown or the control can't take the focus.
    void SetFocus();
    bool CanFocus() const;

    // Events. Handlers are plain functions set by the page; a missing handler does nothing.
    std::function<void()> Click;
    std::function<void()> DblClick;
    std::function<void()> GotFocus;
    std::function<void(bool& cancel)> Validate;

    // Raising an event keeps the control alive even if the handler unloads its form.
    void RaiseClick();
    void RaiseDblClick();
    void RaiseGotFocus();
    bool RaiseValidate();  // false when the handler cancelled

protected:
    Form& form_;

private:
    Kind kind_;
    std::string name_;
    int index_;
    Control* container_ = nullptr;
    bool enabled_ = true;
    bool visible_ = true;
    long backColor_ = vbButtonFace;
    long appearance_ = 1;
    std::string caption_;
    FontAttributes font_;
};

class TextBox : public Control {
public:
    TextBox(Form& form, std::string name, int index);
    const std::string& Text() const { return text_; }
    void SetText(std::string v);  // raises Change when the text differs
    long MaxLength = 0;           // 0: no limit; applies to typing only, as in the run-time
    bool MultiLine = false;
    std::function<void()> Change;

private:
    std::string text_;
};

// What combo boxes and list boxes share: the list and the current entry.
class ListControl : public Control {
public:
    using Control::Control;
    void AddItem(std::string item, long index = -1);
    void RemoveItem(long index);
    void Clear();
    long ListCount() const { return static_cast<long>(items_.size()); }
    const std::string& List(long index) const;
    void SetList(long index, std::string item);
    long ItemData(long index) const;
    void SetItemData(long index, long v);
    long ListIndex() const { return listIndex_; }
    // -1 selects nothing; another entry than the current one raises Click.
    void SetListIndex(long index);

protected:
    virtual void ListIndexChanged() {}
    void CheckIndex(long index) const;
    std::vector<std::string> items_;
    std::vector<long> itemData_;
    long listIndex_ = -1;
};

class ComboBox : public ListControl {
public:
    enum Styles { vbComboDropdown = 0, vbComboDropdownList = 2 };
    ComboBox(Form& form, std::string name, int index);
    long Style = vbComboDropdownList;
    // The edit text; for a drop-down list the current entry's text.
    std::string Text() const;
    // An editable box takes any text and selects the entry that equals it, without a click. A
    // drop-down list selects the entry (raising Click) and refuses other texts (383).
    void SetText(std::string v);

private:
    void ListIndexChanged() override;
    std::string text_;
};

class ListBox : public ListControl {
public:
    enum MultiSelects { vbMultiSelectNone = 0, vbMultiSelectSimple = 1, vbMultiSelectExtended = 2 };
    ListBox(Form& form, std::string name, int index);
    long MultiSelect = vbMultiSelectNone;
    bool Selected(long index) const;
    // A change raises Click; without multi-selection, selecting an entry makes it the current one.
    void SetSelected(long index, bool v);
    long SelCount() const;
    std::string Text() const { return listIndex_ >= 0 ? items_[static_cast<size_t>(listIndex_)] : std::string{}; }

private:
    void ListIndexChanged() override;
    std::vector<bool> selected_;
    friend class ListControl;
};

class CheckBox : public Control {
public:
    enum Values { vbUnchecked = 0, vbChecked = 1, vbGrayed = 2 };
    CheckBox(Form& form, std::string name, int index);
    long Value() const { return value_; }
    void SetValue(long v);  // another state raises Click

private:
    long value_ = vbUnchecked;
};

// Option buttons in one container exclude each other; a group shares a name and is indexed from 0.
class OptionButton : public Control {
public:
    OptionButton(Form& form, std::string name, int index);
    bool Value() const { return value_; }
    void SetValue(bool v);  // True on a button that was off clears its siblings and raises Click

private:
    bool value_ = false;
};

class CommandButton : public Control {
public:
    CommandButton(Form& form, std::string name, int index);
    bool Default() const { return default_; }
    void SetDefault(bool v);  // one default button per form
    bool Cancel() const { return cancel_; }
    void SetCancel(bool v);   // one cancel button per form
    void SetValue(bool v) { if (v) RaiseClick(); }  // pressing in code

private:
    bool default_ = false;
    bool cancel_ = false;
};

class Label : public Control {
public:
    Label(Form& form, std::string name, int index);
};

class Frame : public Control {
public:
    Frame(Form& form, std::string name, int index);
};

class Image : public Control {
public:
    Image(Form& form, std::string name, int index);
    std::string Picture;  // the name of a stored sample drawing
};

// A grid with fixed rows, free text cells, per-row data and a selection of whole rows.
class Grid : public Control {
public:
    enum SortSettings { flexSortNone = 0, flexSortGenericAscending = 1, flexSortGenericDescending = 2,
                        flexSortNumericAscending = 3, flexSortNumericDescending = 4,
                        flexSortStringNoCaseAscending = 5, flexSortStringNoCaseDescending = 6,
                        flexSortStringAscending = 7, flexSortStringDescending = 8 };
    enum SelModes { flexSelectionFree = 0, flexSelectionByRow = 1, flexSelectionListBox = 3 };
    enum Alignments { flexAlignLeftCenter = 1, flexAlignCenterCenter = 4, flexAlignRightCenter = 7, flexAlignGeneral = 9 };
    Grid(Form& form, std::string name, int index);

    long Rows() const { return static_cast<long>(cells_.size()); }
    void SetRows(long n);
    long Cols() const { return cols_; }
    void SetCols(long n);
    long FixedRows = 1;
    long FixedCols = 0;
    long SelectionMode = flexSelectionListBox;
    const std::string& TextMatrix(long row, long col) const;
    void SetTextMatrix(long row, long col, std::string v);
    const host::Variant& RowData(long row) const;
    void SetRowData(long row, host::Variant v);
    long Row() const { return row_; }
    void SetRow(long row);
    long Col() const { return col_; }
    void SetCol(long col);
    // The current cell; in list-box mode the row becomes the one selected row. Raises AfterSelChange.
    void Select(long row, long col);
    bool IsSelected(long row) const;
    void SetIsSelected(long row, bool v);  // raises AfterSelChange on a change
    long SelectedRows() const;
    long SelectedRow(long index) const;    // index from 0 over the selected rows, top to bottom
    double ColWidth(long col) const;
    void SetColWidth(long col, double w);
    double ClientWidth() const { return Width; }
    long ColAlignment(long col) const;
    void SetColAlignment(long col, long alignment);
    // Sorts the rows below the fixed ones by column Col; rows keep their data and selection.
    void SetSort(long setting);
    std::function<void()> AfterSelChange;

private:
    void CheckCell(long row, long col) const;
    struct GridRow {
        std::vector<std::string> text;
        host::Variant data;
        bool selected = false;
    };
    std::vector<GridRow> cells_;
    std::vector<double> colWidths_;
    std::vector<long> colAlignments_;
    long cols_ = 2;
    long row_ = -1, col_ = 0;
};

class ProgressBar : public Control {
public:
    ProgressBar(Form& form, std::string name, int index);
    double Min = 0, Max = 100;
    double Value() const { return value_; }
    void SetValue(double v);  // outside Min..Max raises 380

private:
    double value_ = 0;
};

// Ticks only when the host yields to the front end: there is no other thread.
class Timer : public Control {
public:
    Timer(Form& form, std::string name, int index);
    long Interval = 0;  // milliseconds
    std::function<void()> Tick;
    bool Ticking() const { return ticking_; }
    void RaiseTick();   // not re-entered while a tick runs

private:
    bool ticking_ = false;
};

}  // namespace forms
