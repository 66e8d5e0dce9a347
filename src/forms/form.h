#pragma once
// A form: named controls with containers, a caption, and the lifecycle load, show (modal),
// activate, hide, unload. Showing is modal: Show returns when the form is hidden or unloaded, so a
// form shown from another form's handler nests inside it. The front end decides what "shown"
// means (a driver acting on it headless, a dialog in Qt).
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "forms/controls.h"

namespace forms {

class FrontEnd;

class Form {
public:
    Form(FrontEnd& frontEnd, std::string name);
    virtual ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& Name() const { return name_; }
    const std::string& Caption() const { return caption_; }
    void SetCaption(std::string v) { caption_ = std::move(v); }
    FontAttributes& Font() { return font_; }
    FrontEnd& frontEnd() const { return frontEnd_; }
    // The form's own buttons stand in a column at the right instead of a row at the bottom.
    bool ButtonsBeside = false;
    long hWnd() const;

    bool Loaded() const { return loaded_; }
    bool Visible() const { return visible_; }

    // Lifecycle. Load creates the designed controls and raises Form_Load, once until the next
    // Unload. Show loads if needed and shows modally (400 when already shown). Hide ends the modal
    // show without unloading. Unload raises Form_Unload synchronously, then drops the controls: a
    // page that comes back starts as designed.
    void Load();
    void Show();
    void Hide();
    void Unload();

    // Controls, in the order of their creation.
    const std::vector<std::shared_ptr<Control>>& Controls() const { return controls_; }
    Control* Find(const std::string& name, int index = -1) const;  // case-insensitive; nullptr if absent
    Control& Get(const std::string& name, int index = -1) const;   // raises 730 if absent
    template <class T>
    T& Get(const std::string& name, int index = -1) const {
        auto* c = dynamic_cast<T*>(&Get(name, index));
        if (!c) ThrowWrongKind(name);
        return *c;
    }
    std::vector<Control*> Group(const std::string& name) const;  // a control array, by index
    Control* ActiveControl() const { return active_; }

    // What a user does. Each gesture acts only on a control that is visible and enabled and takes
    // the focus first, as a click or a keystroke would; the answer is false when it could not act.
    bool UserClick(const std::string& name, int index = -1);      // button, check box, option, frame
    bool UserDblClick(const std::string& name, int index = -1);
    bool UserType(const std::string& name, const std::string& text);  // replaces a text box's or combo's text
    bool UserSelect(const std::string& name, long listIndex);     // combo or list entry, grid row
    bool UserSelectText(const std::string& name, const std::string& item);  // the entry with this text
    bool UserSetSelected(const std::string& name, long listIndex, bool selected);  // multi-select list
    bool UserFocus(const std::string& name, int index = -1);      // tabbing into a control
    bool UserPressEnter();   // the default button, or a new line in a multi-line text box
    bool UserPressEscape();  // the cancel button
    void UserClose();        // the window's close box: unloads the form

    // Front end hooks.
    void SetShown(bool v) { visible_ = v; }
    void RaiseActivate();
    void RaiseDeactivate();
    bool MoveFocus(Control& to);  // validate the control losing the focus, then got-focus; false if cancelled

protected:
    // Creates the designed controls; runs at every load.
    virtual void Design() {}
    virtual void Form_Load() {}
    virtual void Form_Activate() {}
    virtual void Form_Deactivate() {}
    virtual void Form_Unload() {}

    template <class T>
    T& Add(const std::string& name, Control* container = nullptr, int index = -1) {
        static_assert(std::is_base_of_v<Control, T>);
        auto c = std::make_shared<T>(*this, name, index);
        c->SetContainer(container);
        T& ref = *c;
        controls_.push_back(std::move(c));
        return ref;
    }

private:
    friend class Control;
    [[noreturn]] static void ThrowWrongKind(const std::string& name);
    Control* Usable(const std::string& name, int index);
    FrontEnd& frontEnd_;
    std::string name_;
    std::string caption_;
    FontAttributes font_;
    bool loaded_ = false;
    bool visible_ = false;
    bool unloading_ = false;
    std::vector<std::shared_ptr<Control>> controls_;
    Control* active_ = nullptr;
};

}  // namespace forms
