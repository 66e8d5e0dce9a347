#include "forms/form.h"

#include <algorithm>

#include "forms/frontend.h"
#include "host/error.h"
#include "host/variant.h"

namespace forms {

Form::Form(FrontEnd& frontEnd, std::string name) : frontEnd_(frontEnd), name_(std::move(name)) {}

Form::~Form() = default;

long Form::hWnd() const { return frontEnd_.WindowHandle(*this); }

// ---------------------------------------------------------------- lifecycle

void Form::Load() {
    if (loaded_) return;
    loaded_ = true;
    controls_.clear();
    active_ = nullptr;
    Design();
    Form_Load();
}

void Form::Show() {
    if (visible_) host::Raise(ctlerr::AlreadyDisplayed, "Form already displayed; can't show modally");
    Load();
    if (!loaded_) return;  // the load handler unloaded it
    frontEnd_.ShowModal(*this);
}

void Form::Hide() {
    if (!visible_) return;
    visible_ = false;
    frontEnd_.Closed(*this);
}

void Form::Unload() {
    if (!loaded_ || unloading_) return;
    ScopedFlag busy(unloading_);
    Form_Unload();
    bool wasVisible = visible_;
    visible_ = false;
    loaded_ = false;
    active_ = nullptr;
    // A handler still running on one of these controls keeps its own reference.
    controls_.clear();
    if (wasVisible) frontEnd_.Closed(*this);
}

void Form::RaiseActivate() {
    if (loaded_) Form_Activate();
}

void Form::RaiseDeactivate() {
    if (loaded_) Form_Deactivate();
}

// ---------------------------------------------------------------- controls

Control* Form::Find(const std::string& name, int index) const {
    for (auto& c : controls_)
        if (c->Index() == index && host::EqualsNoCase(c->Name(), name)) return c.get();
    return nullptr;
}

Control& Form::Get(const std::string& name, int index) const {
    if (auto* c = Find(name, index)) return *c;
    host::Raise(ctlerr::ControlNotFound, "Control not found: " + name_ + "." + name +
                                             (index >= 0 ? "(" + std::to_string(index) + ")" : ""));
}

void Form::ThrowWrongKind(const std::string& name) { host::Raise(host::err::TypeMismatch, "Type mismatch: " + name); }

std::vector<Control*> Form::Group(const std::string& name) const {
    std::vector<Control*> out;
    for (auto& c : controls_)
        if (host::EqualsNoCase(c->Name(), name)) out.push_back(c.get());
    std::stable_sort(out.begin(), out.end(), [](Control* a, Control* b) { return a->Index() < b->Index(); });
    return out;
}

bool Form::MoveFocus(Control& to) {
    if (active_ == &to) return true;
    auto keep = to.shared_from_this();
    if (active_ && !active_->RaiseValidate()) return false;
    if (!loaded_) return false;
    active_ = &to;
    to.RaiseGotFocus();
    return loaded_;
}

// ---------------------------------------------------------------- gestures

Control* Form::Usable(const std::string& name, int index) {
    if (!visible_) return nullptr;
    Control* c = Find(name, index);
    if (!c) return nullptr;
    for (const Control* p = c; p; p = p->Container())
        if (!p->Enabled() || !p->Visible()) return nullptr;
    if (c->CanFocus() && !MoveFocus(*c)) return nullptr;
    return loaded_ ? c : nullptr;
}

bool Form::UserClick(const std::string& name, int index) {
    Control* c = Usable(name, index);
    if (!c) return false;
    auto keep = c->shared_from_this();
    switch (c->kind()) {
        case Kind::CheckBox: {
            auto& cb = static_cast<CheckBox&>(*c);
            cb.SetValue(cb.Value() == CheckBox::vbChecked ? CheckBox::vbUnchecked : CheckBox::vbChecked);
            break;
        }
        case Kind::OptionButton: static_cast<OptionButton&>(*c).SetValue(true); break;
        default: c->RaiseClick(); break;
    }
    return true;
}

bool Form::UserDblClick(const std::string& name, int index) {
    Control* c = Usable(name, index);
    if (!c) return false;
    c->RaiseDblClick();
    return true;
}

bool Form::UserType(const std::string& name, const std::string& text) {
    Control* c = Find(name);
    if (!c || (c->kind() != Kind::TextBox && c->kind() != Kind::ComboBox)) return false;
    if (auto* combo = dynamic_cast<ComboBox*>(c); combo && combo->Style == ComboBox::vbComboDropdownList) return false;
    c = Usable(name, -1);
    if (!c) return false;
    if (auto* tb = dynamic_cast<TextBox*>(c)) {
        tb->SetText(tb->MaxLength > 0 && host::Len(text) > tb->MaxLength ? host::Left(text, tb->MaxLength) : text);
    } else {
        static_cast<ComboBox&>(*c).SetText(text);
    }
    return true;
}

bool Form::UserSelect(const std::string& name, long listIndex) {
    Control* found = Find(name);
    if (!found) return false;
    if (auto* list = dynamic_cast<ListControl*>(found)) {
        if (listIndex < 0 || listIndex >= list->ListCount()) return false;
    } else if (auto* grid = dynamic_cast<Grid*>(found)) {
        if (listIndex < grid->FixedRows || listIndex >= grid->Rows()) return false;
    } else {
        return false;
    }
    Control* c = Usable(name, -1);
    if (!c) return false;
    auto keep = c->shared_from_this();
    if (auto* lb = dynamic_cast<ListBox*>(c); lb && lb->MultiSelect != ListBox::vbMultiSelectNone) {
        for (long i = 0; i < lb->ListCount(); ++i)
            if (i != listIndex && lb->Selected(i)) lb->SetSelected(i, false);
        lb->SetSelected(listIndex, true);
    } else if (auto* list = dynamic_cast<ListControl*>(c)) {
        list->SetListIndex(listIndex);
    } else {
        auto& grid = static_cast<Grid&>(*c);
        grid.Select(listIndex, grid.Col());
        grid.RaiseClick();
    }
    return true;
}

bool Form::UserSelectText(const std::string& name, const std::string& item) {
    auto* list = dynamic_cast<ListControl*>(Find(name));
    if (!list) return false;
    for (long i = 0; i < list->ListCount(); ++i)
        if (list->List(i) == item) return UserSelect(name, i);
    return false;
}

bool Form::UserSetSelected(const std::string& name, long listIndex, bool selected) {
    Control* found = Find(name);
    auto* lb = dynamic_cast<ListBox*>(found);
    auto* grid = dynamic_cast<Grid*>(found);
    if (lb && (listIndex < 0 || listIndex >= lb->ListCount())) return false;
    if (grid && (listIndex < grid->FixedRows || listIndex >= grid->Rows())) return false;
    if (!lb && !grid) return false;
    Control* c = Usable(name, -1);
    if (!c) return false;
    auto keep = c->shared_from_this();
    if (lb) {
        lb->SetSelected(listIndex, selected);
    } else {
        grid->SetIsSelected(listIndex, selected);
        grid->RaiseClick();
    }
    return true;
}

bool Form::UserFocus(const std::string& name, int index) { return Usable(name, index) != nullptr; }

bool Form::UserPressEnter() {
    if (!visible_) return false;
    if (active_ && active_->kind() == Kind::CommandButton) return UserClick(active_->Name(), active_->Index());
    for (auto& c : controls_)
        if (auto* b = dynamic_cast<CommandButton*>(c.get()); b && b->Default())
            return UserClick(b->Name(), b->Index());
    if (auto* tb = dynamic_cast<TextBox*>(active_); tb && tb->MultiLine) {
        tb->SetText(tb->Text() + "\r\n");
        return true;
    }
    return false;
}

bool Form::UserPressEscape() {
    if (!visible_) return false;
    for (auto& c : controls_)
        if (auto* b = dynamic_cast<CommandButton*>(c.get()); b && b->Cancel()) return UserClick(b->Name(), b->Index());
    return false;
}

void Form::UserClose() { Unload(); }

}  // namespace forms
