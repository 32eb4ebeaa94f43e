// The fields of a statistics page as data: which control shows what of a reply.
#pragma once

#include "toolkit/controls/board.h"
#include "toolkit/controls/edit.h"
#include "ui/myedit.h"
#include "ui/stats/baselines.h"
#include "ui/stats/shownbytes.h"
#include "ui/stats/statstext.h"

#include <span>
#include <vector>

template <class View> struct StatsField {
    const char* control;  // name of a read-only field in the page's layout
    StatsValue<View> value;
};

// Shows one kind of reply. Only texts that change reach the screen.
template <class View> class FieldMap : public Baselines<std::vector<std::uint32_t>> {
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
        if (!shown_.update(reply.bytes()) && !clear) return;
        baselines_.resize(fields_.size());
        for (std::size_t i = 0; i < fields_.size(); ++i)
            fields_[i].edit.write(textOf(fields_[i].value, reply, baselines_[i], clear));
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
    };

    void rewrite() override { shown_.forget(); }

    std::vector<Field> fields_;
    ShownReply shown_;
};
