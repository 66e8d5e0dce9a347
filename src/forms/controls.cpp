#include "forms/controls.h"

#include <algorithm>

#include "forms/form.h"
#include "host/error.h"

namespace forms {

namespace {
[[noreturn]] void InvalidValue() { host::Raise(ctlerr::InvalidPropertyValue, "Invalid property value"); }
[[noreturn]] void InvalidIndex() { host::Raise(ctlerr::InvalidArrayIndex, "Invalid property array index"); }
}  // namespace

// ---------------------------------------------------------------- base

Control::Control(Form& form, Kind kind, std::string name, int index)
    : form_(form), kind_(kind), name_(std::move(name)), index_(index) {
    if (kind == Kind::TextBox || kind == Kind::ComboBox || kind == Kind::ListBox) backColor_ = vbWhite;
}

std::string Control::TypeName() const {
    switch (kind_) {
        case Kind::TextBox: return "TextBox";
        case Kind::ComboBox: return "ComboBox";
        case Kind::ListBox: return "ListBox";
        case Kind::CheckBox: return "CheckBox";
        case Kind::OptionButton: return "OptionButton";
        case Kind::CommandButton: return "CommandButton";
        case Kind::Label: return "Label";
        case Kind::Frame: return "Frame";
        case Kind::Image: return "Image";
        case Kind::Grid: return "VSFlexGrid";
        case Kind::ProgressBar: return "ProgressBar";
        case Kind::Timer: return "Timer";
    }
    return {};
}

bool Control::CanFocus() const {
    switch (kind_) {
        case Kind::Label: case Kind::Frame: case Kind::Image: case Kind::ProgressBar: case Kind::Timer:
            return false;
        default: break;
    }
    for (const Control* c = this; c; c = c->container_)
        if (!c->enabled_ || !c->visible_) return false;
    return true;
}

void Control::SetFocus() {
    if (!form_.Visible() || !CanFocus()) host::Raise(host::err::InvalidProcedureCall);
    form_.MoveFocus(*this);
}

void Control::RaiseClick() {
    auto keep = shared_from_this();
    if (auto h = Click) h();
}

void Control::RaiseDblClick() {
    auto keep = shared_from_this();
    if (auto h = DblClick) h();
}

void Control::RaiseGotFocus() {
    auto keep = shared_from_this();
    if (auto h = GotFocus) h();
}

bool Control::RaiseValidate() {
    auto keep = shared_from_this();
    bool cancel = false;
    if (auto h = Validate) h(cancel);
    return !cancel;
}

// ---------------------------------------------------------------- text box

TextBox::TextBox(Form& form, std::string name, int index) : Control(form, Kind::TextBox, std::move(name), index) {}

void TextBox::SetText(std::string v) {
    if (v == text_) return;
    text_ = std::move(v);
    auto keep = shared_from_this();
    if (auto h = Change) h();
}

// ---------------------------------------------------------------- lists

void ListControl::CheckIndex(long index) const {
    if (index < 0 || index >= ListCount()) InvalidIndex();
}

void ListControl::AddItem(std::string item, long index) {
    if (index < 0) index = ListCount();
    if (index > ListCount()) InvalidValue();
    items_.insert(items_.begin() + index, std::move(item));
    itemData_.insert(itemData_.begin() + index, 0);
    if (auto* lb = dynamic_cast<ListBox*>(this)) lb->selected_.insert(lb->selected_.begin() + index, false);
    if (listIndex_ >= index) ++listIndex_;
}

void ListControl::RemoveItem(long index) {
    CheckIndex(index);
    items_.erase(items_.begin() + index);
    itemData_.erase(itemData_.begin() + index);
    if (auto* lb = dynamic_cast<ListBox*>(this)) lb->selected_.erase(lb->selected_.begin() + index);
    if (listIndex_ == index) listIndex_ = -1;
    else if (listIndex_ > index) --listIndex_;
}

void ListControl::Clear() {
    items_.clear();
    itemData_.clear();
    if (auto* lb = dynamic_cast<ListBox*>(this)) lb->selected_.clear();
    listIndex_ = -1;
}

const std::string& ListControl::List(long index) const {
    CheckIndex(index);
    return items_[static_cast<size_t>(index)];
}

void ListControl::SetList(long index, std::string item) {
    CheckIndex(index);
    items_[static_cast<size_t>(index)] = std::move(item);
}

long ListControl::ItemData(long index) const {
    CheckIndex(index);
    return itemData_[static_cast<size_t>(index)];
}

void ListControl::SetItemData(long index, long v) {
    CheckIndex(index);
    itemData_[static_cast<size_t>(index)] = v;
}

void ListControl::SetListIndex(long index) {
    if (index < -1 || index >= ListCount()) InvalidValue();
    if (index == listIndex_) return;
    listIndex_ = index;
    ListIndexChanged();
    RaiseClick();
}

ComboBox::ComboBox(Form& form, std::string name, int index) : ListControl(form, Kind::ComboBox, std::move(name), index) {}

std::string ComboBox::Text() const {
    if (Style == vbComboDropdownList) return listIndex_ >= 0 ? items_[static_cast<size_t>(listIndex_)] : std::string{};
    return text_;
}

void ComboBox::ListIndexChanged() {
    if (listIndex_ >= 0) text_ = items_[static_cast<size_t>(listIndex_)];
}

void ComboBox::SetText(std::string v) {
    auto it = std::find(items_.begin(), items_.end(), v);
    long found = it == items_.end() ? -1 : static_cast<long>(it - items_.begin());
    if (Style == vbComboDropdownList) {
        if (found < 0 && !v.empty()) host::Raise(ctlerr::TextReadOnly, "'Text' property is read-only");
        SetListIndex(found);
        return;
    }
    text_ = std::move(v);
    listIndex_ = found;
}

ListBox::ListBox(Form& form, std::string name, int index) : ListControl(form, Kind::ListBox, std::move(name), index) {}

void ListBox::ListIndexChanged() {
    if (MultiSelect == vbMultiSelectNone)
        for (size_t i = 0; i < selected_.size(); ++i) selected_[i] = static_cast<long>(i) == listIndex_;
}

bool ListBox::Selected(long index) const {
    CheckIndex(index);
    return selected_[static_cast<size_t>(index)];
}

void ListBox::SetSelected(long index, bool v) {
    CheckIndex(index);
    if (MultiSelect == vbMultiSelectNone) {
        if (v) SetListIndex(index);
        else if (listIndex_ == index) SetListIndex(-1);
        return;
    }
    if (selected_[static_cast<size_t>(index)] == v) return;
    selected_[static_cast<size_t>(index)] = v;
    listIndex_ = index;
    RaiseClick();
}

long ListBox::SelCount() const { return static_cast<long>(std::count(selected_.begin(), selected_.end(), true)); }

// ---------------------------------------------------------------- check and option

CheckBox::CheckBox(Form& form, std::string name, int index) : Control(form, Kind::CheckBox, std::move(name), index) {}

void CheckBox::SetValue(long v) {
    if (v < vbUnchecked || v > vbGrayed) InvalidValue();
    if (v == value_) return;
    value_ = v;
    RaiseClick();
}

OptionButton::OptionButton(Form& form, std::string name, int index)
    : Control(form, Kind::OptionButton, std::move(name), index) {}

void OptionButton::SetValue(bool v) {
    if (!v || value_) {
        value_ = v;
        return;
    }
    for (auto& c : form_.Controls())
        if (auto* o = dynamic_cast<OptionButton*>(c.get()); o && o != this && o->Container() == Container())
            o->value_ = false;
    value_ = true;
    RaiseClick();
}

// ---------------------------------------------------------------- buttons, labels, frames, images

CommandButton::CommandButton(Form& form, std::string name, int index)
    : Control(form, Kind::CommandButton, std::move(name), index) {}

void CommandButton::SetDefault(bool v) {
    if (v)
        for (auto& c : form_.Controls())
            if (auto* b = dynamic_cast<CommandButton*>(c.get())) b->default_ = false;
    default_ = v;
}

void CommandButton::SetCancel(bool v) {
    if (v)
        for (auto& c : form_.Controls())
            if (auto* b = dynamic_cast<CommandButton*>(c.get())) b->cancel_ = false;
    cancel_ = v;
}

Label::Label(Form& form, std::string name, int index) : Control(form, Kind::Label, std::move(name), index) {}
Frame::Frame(Form& form, std::string name, int index) : Control(form, Kind::Frame, std::move(name), index) {}
Image::Image(Form& form, std::string name, int index) : Control(form, Kind::Image, std::move(name), index) {}

// ---------------------------------------------------------------- grid

Grid::Grid(Form& form, std::string name, int index) : Control(form, Kind::Grid, std::move(name), index) {
    SetBackColor(vbWhite);
    SetCols(2);
    SetRows(1);
}

void Grid::CheckCell(long row, long col) const {
    if (row < 0 || row >= Rows() || col < 0 || col >= cols_) InvalidIndex();
}

void Grid::SetRows(long n) {
    if (n < 0) InvalidValue();
    cells_.resize(static_cast<size_t>(n));
    for (auto& r : cells_) r.text.resize(static_cast<size_t>(cols_));
    if (row_ >= n) row_ = n - 1;
}

void Grid::SetCols(long n) {
    if (n < 0) InvalidValue();
    cols_ = n;
    for (auto& r : cells_) r.text.resize(static_cast<size_t>(n));
    colWidths_.resize(static_cast<size_t>(n), -1);
    colAlignments_.resize(static_cast<size_t>(n), flexAlignGeneral);
    if (col_ >= n) col_ = n > 0 ? n - 1 : 0;
}

const std::string& Grid::TextMatrix(long row, long col) const {
    CheckCell(row, col);
    return cells_[static_cast<size_t>(row)].text[static_cast<size_t>(col)];
}

void Grid::SetTextMatrix(long row, long col, std::string v) {
    CheckCell(row, col);
    cells_[static_cast<size_t>(row)].text[static_cast<size_t>(col)] = std::move(v);
}

const host::Variant& Grid::RowData(long row) const {
    CheckCell(row, 0);
    return cells_[static_cast<size_t>(row)].data;
}

void Grid::SetRowData(long row, host::Variant v) {
    CheckCell(row, 0);
    cells_[static_cast<size_t>(row)].data = std::move(v);
}

void Grid::SetRow(long row) {
    if (row < -1 || row >= Rows()) InvalidValue();
    row_ = row;
}

void Grid::SetCol(long col) {
    if (col < 0 || col >= cols_) InvalidValue();
    col_ = col;
}

void Grid::Select(long row, long col) {
    CheckCell(row, col);
    row_ = row;
    col_ = col;
    if (SelectionMode == flexSelectionListBox || SelectionMode == flexSelectionByRow)
        for (long r = 0; r < Rows(); ++r) cells_[static_cast<size_t>(r)].selected = r == row && r >= FixedRows;
    auto keep = shared_from_this();
    if (auto h = AfterSelChange) h();
}

bool Grid::IsSelected(long row) const {
    CheckCell(row, 0);
    return cells_[static_cast<size_t>(row)].selected;
}

void Grid::SetIsSelected(long row, bool v) {
    CheckCell(row, 0);
    if (cells_[static_cast<size_t>(row)].selected == v) return;
    cells_[static_cast<size_t>(row)].selected = v;
    auto keep = shared_from_this();
    if (auto h = AfterSelChange) h();
}

long Grid::SelectedRows() const {
    long n = 0;
    for (auto& r : cells_) n += r.selected ? 1 : 0;
    return n;
}

long Grid::SelectedRow(long index) const {
    long n = 0;
    for (long r = 0; r < Rows(); ++r)
        if (cells_[static_cast<size_t>(r)].selected && n++ == index) return r;
    InvalidIndex();
}

double Grid::ColWidth(long col) const {
    if (col < 0 || col >= cols_) InvalidIndex();
    return colWidths_[static_cast<size_t>(col)];
}

void Grid::SetColWidth(long col, double w) {
    if (col < 0 || col >= cols_) InvalidIndex();
    colWidths_[static_cast<size_t>(col)] = w;
}

long Grid::ColAlignment(long col) const {
    if (col < 0 || col >= cols_) InvalidIndex();
    return colAlignments_[static_cast<size_t>(col)];
}

void Grid::SetColAlignment(long col, long alignment) {
    if (col < 0 || col >= cols_) InvalidIndex();
    if (alignment < 0 || alignment > flexAlignGeneral) InvalidValue();
    colAlignments_[static_cast<size_t>(col)] = alignment;
}

void Grid::SetSort(long setting) {
    if (setting < 0 || setting > flexSortStringDescending) InvalidValue();
    if (setting == flexSortNone || FixedRows >= Rows()) return;
    long col = col_;
    auto key = [col](const GridRow& r) -> const std::string& { return r.text[static_cast<size_t>(col)]; };
    bool descending = setting % 2 == 0;
    auto less = [&](const GridRow& a, const GridRow& b) {
        const std::string& x = key(a);
        const std::string& y = key(b);
        bool numeric = setting == flexSortNumericAscending || setting == flexSortNumericDescending ||
                       ((setting == flexSortGenericAscending || setting == flexSortGenericDescending) &&
                        host::Variant(x).IsNumeric() && host::Variant(y).IsNumeric() && !x.empty() && !y.empty());
        if (numeric) return host::Val(x) < host::Val(y);
        if (setting == flexSortStringAscending || setting == flexSortStringDescending) return x < y;
        return host::UCase(x) < host::UCase(y);
    };
    std::stable_sort(cells_.begin() + FixedRows, cells_.end(),
                     [&](const GridRow& a, const GridRow& b) { return descending ? less(b, a) : less(a, b); });
}

// ---------------------------------------------------------------- progress bar and timer

ProgressBar::ProgressBar(Form& form, std::string name, int index)
    : Control(form, Kind::ProgressBar, std::move(name), index) {}

void ProgressBar::SetValue(double v) {
    if (v < Min || v > Max) InvalidValue();
    value_ = v;
}

Timer::Timer(Form& form, std::string name, int index) : Control(form, Kind::Timer, std::move(name), index) {}

void Timer::RaiseTick() {
    if (ticking_ || !Enabled() || Interval <= 0) return;
    auto keep = shared_from_this();
    ScopedFlag busy(ticking_);
    if (auto h = Tick) h();
}

}  // namespace forms
