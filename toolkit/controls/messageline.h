// The line of text below the buttons of a window, which says one thing at a time: what is going on; or else
// why a key or a pasted text was refused, until the next key or until the focus moves; or else what is wrong
// with the value of the field that has the focus; or else what the greyed control under the pointer waits
// for; or else what is wrong anywhere on the page.
#pragma once

#include "toolkit/controls/board.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/layout.h"

#include <deque>
#include <functional>
#include <string>

// Its row in the layout of the window. In a height of several lines of text a long one is broken.
constexpr zControlRow messageRow(const zRect& place, const zMore& more = {}) {
    return {.place = place, .name = "message", .more = more};
}

class zMessageLine {
  public:
    // In a window with messageRow(), whose controls it watches, too. The board must outlive it, and so must
    // those that are watched.
    explicit zMessageLine(zBoard& window);
    ~zMessageLine();
    zMessageLine(const zMessageLine&) = delete;
    zMessageLine& operator=(const zMessageLine&) = delete;

    // Watches the controls of a page.
    void watch(zBoard& board);

    struct Advice {
        std::string field, page;  // about the field with the focus, and about everything; empty: nothing
    };
    // Asked when a value or the focus has changed. `field` is the one with the focus, or null.
    std::function<Advice(const zEdit* field)> advise;

    // Asks for advice again, after a change that no control has told of.
    void refresh();

    // Says what is going on; with an empty text nothing is any more.
    void setProgress(const std::string& text);

    std::string text() const { return shown_; }

  private:
    struct Board {
        zMessageLine& line;
        zBoard& board;
    };
    struct Field {
        zMessageLine& line;
        zEdit& field;
    };
    struct Handlers;

    void pointerAt(const zBoard& board, int x, int y);
    void fieldEvent(const zEdit& field, int type);
    void refused(const std::string& reason);
    void show();
    std::string broken(const std::string& text) const;

    Widget line_;
    std::deque<Board> boards_;
    std::deque<Field> fields_;
    const zEdit* focused_ = nullptr;
    std::string progress_, refusal_, waits_;
    Advice advice_;
    std::string shown_;
};
