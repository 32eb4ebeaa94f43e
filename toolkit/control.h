// Controls: one object per row of a layout table. A control lives as long as its window, which makes and owns
// it; its handlers are plain functions, called from the event loop and never after the control is gone.
#pragma once

#include "toolkit/fonts.h"
#include "toolkit/layout.h"
#include "toolkit/picture.h"
#include "toolkit/widget.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class zControl {
  public:
    virtual ~zControl();
    zControl(const zControl&) = delete;
    zControl& operator=(const zControl&) = delete;

    // Makes the control that a row describes inside a board.
    static std::unique_ptr<zControl> create(Widget board, const zDialogUnits& units, const zControlRow& row);

    int id() const { return id_; }
    Widget widget() const { return widget_; }
    virtual Widget outermost() const { return widget_; }  // what stands on the board: a list's is its window

    void enable(bool on);
    bool enabled() const;

  protected:
    explicit zControl(const zControlRow& row);

    // Takes over the widget and calls `handler` from its callback list.
    void attach(Widget widget) { widget_ = widget; }
    using Handler = void (*)(zControl& self, void* callData);
    void listen(const char* callback, Handler handler);

  private:
    struct Listener;

    int id_;
    Widget widget_ = nullptr;
    std::vector<std::unique_ptr<Listener>> listeners_;
};

class zStatic : public zControl {
  public:
    zStatic(Widget board, const zRect& place, const zControlRow& row);
};

class zFrame : public zControl {
  public:
    zFrame(Widget board, const zRect& place, const zControlRow& row);
};

class zEdit : public zControl {
  public:
    zEdit(Widget board, const zRect& place, const zControlRow& row);

    // Characters other than printable ASCII are shown as '?'. Writing the text that stands already touches
    // nothing.
    void setText(const std::string& text);
    std::string text() const;
};

class zListBox : public zControl {
  public:
    zListBox(Widget board, const zRect& place, const zControlRow& row);

    void append(const std::string& line);
    int count() const { return static_cast<int>(lines_.size()); }
    std::string line(int position) const;  // empty when there is none

    // Positions count from 0; -1 means that nothing is selected. Selecting by program calls no handler.
    void select(int position);
    int selected() const;
    Widget outermost() const override;

    std::function<void()> onSelect;    // the user has chosen a line
    std::function<void()> onActivate;  // double-click, or Return on a line

  private:
    void keepPlace();

    zRect place_;
    std::vector<std::string> lines_;
};

class zBitmapButton : public zControl {
  public:
    zBitmapButton(Widget board, const zRect& place, const zControlRow& row);

    std::function<void()> onClick;

  private:
    zPixmap picture_;
};
