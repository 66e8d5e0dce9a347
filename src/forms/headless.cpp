#include "forms/headless.h"

#include <algorithm>
#include <cstdio>

#include "forms/form.h"

namespace forms {

// ---------------------------------------------------------------- front end

void HeadlessFrontEnd::ShowModal(Form& form) {
    Form* below = stack_.empty() ? nullptr : stack_.back();
    if (below && below->Visible()) below->RaiseDeactivate();
    stack_.push_back(&form);
    struct Pop {
        std::vector<Form*>& stack;
        Form* form;
        ~Pop() {
            auto it = std::find(stack.rbegin(), stack.rend(), form);
            if (it != stack.rend()) stack.erase(std::next(it).base());
            if (form->Visible()) form->SetShown(false);  // left by an error escaping the driver
        }
    } pop{stack_, &form};
    form.SetShown(true);
    form.RaiseActivate();
    if (form.Visible()) driver_.OnShow(form);
    if (form.Visible()) form.UserClose();
    if (form.Visible()) form.Hide();  // an unload that was refused still ends the show
    if (below && below->Visible()) below->RaiseActivate();
}

void HeadlessFrontEnd::DoEvents() {
    ++pumps_;
    std::vector<Form*> shown = stack_;
    for (Form* f : shown) {
        if (!f->Visible()) continue;
        std::vector<std::shared_ptr<Control>> timers;
        for (auto& c : f->Controls())
            if (c->kind() == Kind::Timer) timers.push_back(c);
        for (auto& t : timers) static_cast<Timer&>(*t).RaiseTick();
    }
}

// ---------------------------------------------------------------- scripted driver

ScriptedDriver::Step ScriptedDriver::Click(const std::string& control, int index) {
    return {"click " + control, [=](Form& f) { return f.UserClick(control, index); }};
}

ScriptedDriver::Step ScriptedDriver::DblClick(const std::string& control, int index) {
    return {"double click " + control, [=](Form& f) { return f.UserDblClick(control, index); }};
}

ScriptedDriver::Step ScriptedDriver::Type(const std::string& control, const std::string& text) {
    return {"type into " + control, [=](Form& f) { return f.UserType(control, text); }};
}

ScriptedDriver::Step ScriptedDriver::Select(const std::string& control, long listIndex) {
    return {"select entry " + std::to_string(listIndex) + " of " + control,
            [=](Form& f) { return f.UserSelect(control, listIndex); }};
}

ScriptedDriver::Step ScriptedDriver::SelectText(const std::string& control, const std::string& item) {
    return {"select \"" + item + "\" in " + control, [=](Form& f) { return f.UserSelectText(control, item); }};
}

ScriptedDriver::Step ScriptedDriver::SetSelected(const std::string& control, long listIndex, bool selected) {
    return {(selected ? "select entry " : "deselect entry ") + std::to_string(listIndex) + " of " + control,
            [=](Form& f) { return f.UserSetSelected(control, listIndex, selected); }};
}

ScriptedDriver::Step ScriptedDriver::PressEnter() {
    return {"press Enter", [](Form& f) { return f.UserPressEnter(); }};
}

ScriptedDriver::Step ScriptedDriver::Close() {
    return {"close", [](Form& f) {
                f.UserClose();
                return true;
            }};
}

ScriptedDriver::Step ScriptedDriver::Do(std::string what, std::function<void(Form&)> fn) {
    return {std::move(what), [fn = std::move(fn)](Form& f) {
                fn(f);
                return true;
            }};
}

ScriptedDriver& ScriptedDriver::Visit(const std::string& page, std::vector<Step> steps) {
    visits_[page].push_back(std::move(steps));
    return *this;
}

bool ScriptedDriver::Pending() const {
    return std::any_of(visits_.begin(), visits_.end(), [](auto& v) { return !v.second.empty(); });
}

void ScriptedDriver::OnShow(Form& form) {
    shown_.push_back(form.Caption());
    auto it = visits_.find(form.Caption());
    if (it == visits_.end() || it->second.empty()) it = visits_.find(form.Name());
    if (it == visits_.end() || it->second.empty()) {
        problems_.push_back(form.Caption() + ": shown with no visit queued");
        return;
    }
    std::vector<Step> steps = std::move(it->second.front());
    it->second.pop_front();
    for (size_t i = 0; i < steps.size(); ++i) {
        if (!form.Visible()) {
            problems_.push_back(form.Caption() + ": gone before \"" + steps[i].what + "\"");
            return;
        }
        if (!steps[i].act(form)) {
            problems_.push_back(form.Caption() + ": could not " + steps[i].what);
            return;
        }
    }
}

// ---------------------------------------------------------------- dialogs

long CollectingDialogs::MsgBox(const std::string& text, long style, const std::string& title) {
    messages.push_back({text, style, title});
    if (onMessage) onMessage(messages.back());
    if ((style & 7) == vbOKOnly) return vbOK;
    if (!answers.empty()) {
        long a = answers.front();
        answers.pop_front();
        return a;
    }
    return defaultAnswer;
}

void CollectingDialogs::Help(long, const std::string& helpFile, long command, long topic) {
    helps.push_back({helpFile, command, topic});
}

std::vector<std::string> CollectingDialogs::Texts() const {
    std::vector<std::string> out;
    for (auto& m : messages) out.push_back(m.text);
    return out;
}

namespace {
const char* AnswerName(long a) {
    switch (a) {
        case vbOK: return "OK";
        case vbCancel: return "Cancel";
        case vbAbort: return "Abort";
        case vbRetry: return "Retry";
        case vbIgnore: return "Ignore";
        case vbYes: return "Yes";
        case vbNo: return "No";
    }
    return "?";
}

// A box's text on one line: its line breaks become " / ".
std::string OneLine(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
        if (text[i] == '\r' || text[i] == '\n') out += " / ";
        else out += text[i];
    }
    return out;
}
}  // namespace

void LineDialogs::Put(const std::string& line) {
    if (sink_) sink_(line);
    else std::fprintf(stderr, "%s\n", line.c_str());
}

long LineDialogs::MsgBox(const std::string& text, long style, const std::string& title) {
    std::string line = (title.empty() ? std::string{} : title + ": ") + OneLine(text);
    if ((style & 7) == vbOKOnly) {
        Put(line);
        return vbOK;
    }
    Put(line + " [answered " + AnswerName(answer_) + "]");
    return answer_;
}

void LineDialogs::Help(long, const std::string& helpFile, long, long topic) {
    Put("help: " + helpFile + ", topic " + std::to_string(topic));
}

}  // namespace forms
