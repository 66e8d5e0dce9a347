#pragma once
// The headless front end: a shown form is handed to a Driver (a test, the scripted command line)
// that acts on it with the user's gestures; message boxes are collected or printed.
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "forms/frontend.h"

namespace forms {

class HeadlessFrontEnd : public FrontEnd {
public:
    explicit HeadlessFrontEnd(Driver& driver) : driver_(driver) {}

    // Activates the form and calls the driver while it stays shown. A form that is still shown
    // when the driver returns is closed as with the window's close box: nobody is left to act.
    void ShowModal(Form& form) override;
    // Ticks the enabled timers of the shown forms once.
    void DoEvents() override;
    long MousePointer() const override { return pointer_; }
    void SetMousePointer(long pointer) override { pointer_ = pointer; }

    long PumpCount() const { return pumps_; }
    const std::vector<Form*>& ShownForms() const { return stack_; }  // bottom to top

private:
    Driver& driver_;
    std::vector<Form*> stack_;
    long pointer_ = vbDefault;
    long pumps_ = 0;
};

// Runs a function on each shown form.
class CallbackDriver : public Driver {
public:
    explicit CallbackDriver(std::function<void(Form&)> onShow) : onShow_(std::move(onShow)) {}
    void OnShow(Form& form) override { if (onShow_) onShow_(form); }

private:
    std::function<void(Form&)> onShow_;
};

// Visits queued per page (a form's caption or name). Each show of a page takes its next visit and
// runs the visit's steps in order while the form stays shown. What could not be done is recorded
// in Problems: a show with no visit queued, a step on a missing, hidden or disabled control, and
// steps left over when the form went away before them.
class ScriptedDriver : public Driver {
public:
    struct Step {
        std::string what;                      // for Problems: "click cmdNext"
        std::function<bool(Form&)> act;        // false when the gesture could not be made
    };
    static Step Click(const std::string& control, int index = -1);
    static Step DblClick(const std::string& control, int index = -1);
    static Step Type(const std::string& control, const std::string& text);
    static Step Select(const std::string& control, long listIndex);
    static Step SelectText(const std::string& control, const std::string& item);
    static Step SetSelected(const std::string& control, long listIndex, bool selected);
    static Step PressEnter();
    static Step Close();
    static Step Do(std::string what, std::function<void(Form&)> fn);

    ScriptedDriver& Visit(const std::string& page, std::vector<Step> steps);
    void OnShow(Form& form) override;

    const std::vector<std::string>& Shown() const { return shown_; }  // captions, in order of showing
    const std::vector<std::string>& Problems() const { return problems_; }
    bool Pending() const;  // visits not taken yet

private:
    std::map<std::string, std::deque<std::vector<Step>>> visits_;
    std::vector<std::string> shown_;
    std::vector<std::string> problems_;
};

// Collects message boxes and help requests; questions take the queued answers, then the default.
class CollectingDialogs : public Dialogs {
public:
    struct Message {
        std::string text;
        long style = vbOKOnly;
        std::string title;
    };
    struct HelpRequest {
        std::string file;
        long command = 0;
        long topic = 0;
    };
    long MsgBox(const std::string& text, long style, const std::string& title) override;
    void Help(long hWnd, const std::string& helpFile, long command, long topic) override;

    std::vector<Message> messages;
    std::vector<HelpRequest> helps;
    std::deque<long> answers;
    long defaultAnswer = vbOK;
    std::function<void(const Message&)> onMessage;  // observes each box as it comes up

    std::vector<std::string> Texts() const;
};

// Message boxes as lines of text ("title: text", line breaks as " / "), to standard error or to a
// sink of the host's; a question is answered with the given answer and says so on its line.
class LineDialogs : public Dialogs {
public:
    explicit LineDialogs(long answer = vbCancel, std::function<void(const std::string&)> sink = {})
        : answer_(answer), sink_(std::move(sink)) {}
    long MsgBox(const std::string& text, long style, const std::string& title) override;
    void Help(long hWnd, const std::string& helpFile, long command, long topic) override;

private:
    void Put(const std::string& line);
    long answer_;
    std::function<void(const std::string&)> sink_;
};

}  // namespace forms
