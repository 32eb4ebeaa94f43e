// The fields of a statistics page as data: which control shows what of a reply.
#pragma once

#include "toolkit/controls/board.h"
#include "toolkit/controls/edit.h"
#include "ui/myedit.h"
#include "ui/stats/shownbytes.h"
#include "ui/stats/statstext.h"

#include <span>
#include <vector>

template <class View> struct StatsField {
    const char* control;  // name of a read-only field in the page's layout
    StatsValue<View> value;
};

// Shows one kind of reply. Only texts that change reach the screen.
template <class View> class FieldMap {
  public:
    // The board must outlive this object.
    FieldMap(const zBoard& board, std::span<const StatsField<View>> rows) {
        fields_.reserve(rows.size());
        for (const StatsField<View>& row : rows)
            fields_.push_back({row.value, myEdit(board.control<zEdit>(row.control))});
    }

    // Shows a reply, or blanks the fields if it is false. With `clear` counters start from 0.
    void show(const View& reply, bool clear = false) {
        if (!reply) return blank();
        if (!shown_.update(0, reply.bytes()) && !clear) return;
        for (Field& field : fields_) field.edit.write(textOf(field.value, reply, field.baseline, clear));
    }

    // Counters start from what the driver counts, as if nothing had been cleared.
    void countAnew() {
        shown_.forget();
        for (Field& field : fields_) field.baseline = 0;
    }

    // Empties all fields.
    void blank() {
        shown_.forget();
        for (Field& field : fields_) field.edit.write("");
    }

  private:
    struct Field {
        StatsValue<View> value;
        myEdit edit;
        std::uint32_t baseline = 0;
    };

    std::vector<Field> fields_;
    ShownBytes shown_;
};
