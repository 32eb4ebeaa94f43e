#include "toolkit/window/filedialog.h"

#include "toolkit/controls/foreignkey.h"
#include "toolkit/controls/rowwidget.h"
#include "toolkit/display/displaycache.h"
#include "toolkit/display/xmtext.h"
#include "toolkit/window/messagebox.h"
#include "toolkit/window/modal.h"
#include "toolkit/window/shell.h"
#include "toolkit/window/title.h"

#include <X11/keysym.h>
#include <Xm/FileSB.h>
#include <Xm/TextF.h>
#include <algorithm>
#include <filesystem>
#include <memory>

namespace fs = std::filesystem;

namespace {

// Where the last file was written.
std::string directory;

class FileDialog {
  public:
    FileDialog(zApplication& application, Widget parent, const std::string& title, const std::string& name)
        : application_(application), shell_(zCreateModalShell("file", parent)) {
        zSetTitle(shell_, title);
        std::error_code failed;
        if (directory.empty()) directory = fs::current_path(failed).string();
        const zXmText all("*"), save("Save"), where(directory + '/');
        zResources resources;
        resources.set(XmNdialogStyle, XmDIALOG_FULL_APPLICATION_MODAL).set(XmNautoUnmanage, False);
        resources.set(XmNdefaultPosition, False).set(XmNdirectory, where).set(XmNpattern, all);
        resources.set(XmNokLabelString, save);
        resources.setFonts(zDisplayCache::of(XtDisplay(shell_)).renderTable(shell_, "bold"));
        box_ = XtCreateWidget("fileBox", xmFileSelectionBoxWidgetClass, shell_, resources.args.data(),
                              resources.count());
        XtUnmanageChild(XtNameToWidget(box_, "Help"));
        text_ = XtNameToWidget(box_, "Text");
        XmTextFieldSetString(text_, (directory + '/' + name).data());
        XmTextFieldSetInsertionPosition(text_, XmTextFieldGetLastPosition(text_));
        XtVaSetValues(box_, XmNinitialFocus, text_, nullptr);
        XtAddCallback(box_, XmNokCallback, saved, this);
        XtAddCallback(box_, XmNcancelCallback, dismissed, this);
        zOnCloseRequest(shell_, dismissed, this);
        zPassHelp(box_, parent);
        XtInsertEventHandler(text_, KeyPressMask, False, pressed, this, XtListHead);
    }
    ~FileDialog() { zDestroyShell(shell_); }
    FileDialog(const FileDialog&) = delete;
    FileDialog& operator=(const FileDialog&) = delete;

    std::optional<std::string> run() {
        zRunModal(application_, shell_, box_, done_);
        zHideModal(shell_, box_);
        XtRemoveCallback(box_, XmNokCallback, saved, this);
        XtRemoveCallback(box_, XmNcancelCallback, dismissed, this);
        return std::move(chosen_);
    }

  private:
    using Text = std::unique_ptr<char, void (*)(char*)>;

    static void saved(Widget, XtPointer place, XtPointer) { static_cast<FileDialog*>(place)->save(); }
    static void dismissed(Widget, XtPointer place, XtPointer) {
        static_cast<FileDialog*>(place)->done_ = true;
    }

    static void pressed(Widget, XtPointer place, XEvent* event, Boolean* goesOn) {
        const XKeyEvent& key = event->xkey;
        Modifiers used = 0;
        KeySym symbol = NoSymbol;
        XtTranslateKeycode(key.display, static_cast<KeyCode>(key.keycode), key.state, &used, &symbol);
        auto& dialog = *static_cast<FileDialog*>(place);
        // The library would write a control character.
        const bool all = (key.state & ControlMask) && (symbol == XK_a || symbol == XK_A);
        if (!all && !zIsForeign(symbol, key.state)) return;
        *goesOn = False;
        if (all)
            return XmTextFieldSetSelection(dialog.text_, 0, XmTextFieldGetLastPosition(dialog.text_),
                                           key.time);
        dialog.say("Only ASCII characters can be typed here.");
    }

    void save() {
        const Text held(XmTextFieldGetString(text_), XtFree);
        const std::string name = held.get();
        const fs::path file = shownDirectory() / name;  // an absolute name stands for itself
        std::error_code none;
        const bool there = fs::exists(fs::symlink_status(file, none));
        if (name.empty() || file.filename().empty()) return say("The name of the file is missing.");
        if (std::ranges::any_of(name, [](char c) { return c >= 0 && c < ' '; }))
            return say("The name has a line end or a tab.");
        if (!fs::is_directory(file.parent_path(), none))
            return say("There is no directory " + file.parent_path().string());
        if (there && !fs::is_regular_file(file, none)) return say(file.string() + " is not a regular file.");
        if (there &&
            !zQuestionBox(application_, shell_, file.string() + " exists.\nReplace it?", "Replace File"))
            return;
        directory = file.parent_path().string();
        chosen_ = file.string();
        done_ = true;
    }

    void say(const std::string& text) {
        zMessageBox(application_, shell_, zMessageStyle::warning, text, "Not Saved Yet");
    }

    fs::path shownDirectory() const {
        XmString shown = nullptr;
        XtVaGetValues(box_, XmNdirectory, &shown, nullptr);
        const Text text(static_cast<char*>(XmStringUnparse(shown, nullptr, XmCHARSET_TEXT, XmCHARSET_TEXT,
                                                           nullptr, 0, XmOUTPUT_ALL)),
                        XtFree);
        XmStringFree(shown);
        return text ? text.get() : "/";
    }

    zApplication& application_;
    Widget shell_, box_ = nullptr, text_ = nullptr;
    std::optional<std::string> chosen_;
    bool done_ = false;
};

}  // namespace

std::optional<std::string> zAskForNewFile(zApplication& application, Widget control, const std::string& title,
                                          const std::string& name) {
    return FileDialog(application, zShellOf(control), title, name).run();
}

Widget zShellOf(Widget widget) {
    while (!XtIsShell(widget)) widget = XtParent(widget);
    return widget;
}
