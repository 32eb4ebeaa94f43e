// The fields of a statistics page as data: which control shows what of a reply.
#pragma once

#include "toolkit/controls/board.h"
#include "toolkit/controls/edit.h"
#include "toolkit/controls/statics.h"
#include "ui/myedit.h"
#include "ui/stats/baselines.h"
#include "ui/stats/rated.h"
#include "ui/stats/shownbytes.h"
#include "ui/stats/statstext.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

template <class View> struct StatsField {
    const char* control;  // name of a read-only field in the page's layout
    StatsValue<View> value;
};

// Shows one kind of reply. Only texts that change reach the screen. The label of a field is the control
// whose name is the field's and "Label".
template <class View> class FieldMap : public Baselines<std::vector<std::uint32_t>>, public Rated {
  public:
    // The board must outlive this object.
    FieldMap(zBoard& board, metrics::Service service, std::span<const StatsField<View>> rows)
        : board_(board) {
        fields_.reserve(rows.size());
        for (const StatsField<View>& row : rows)
            fields_.push_back({row.value, board.control<zEdit>(row.control), row.control,
                               myEdit(board.control<zEdit>(row.control)),
                               row.value.counter ? metrics::subjectOf({service}, "", row.value.counter)
                                                 : metrics::Subject{}});
    }

    // Shows a reply, or blanks the fields if it is false. With `clear` counters start from 0.
    void show(const View& reply, bool clear = false) {
        blank_ = !reply;
        if (blank_) return blank();
        if (!shown_.update(reply.bytes()) && !clear) return;
        baselines_.resize(fields_.size());
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            Field& field = fields_[i];
            const StatsText text = textOf(field.value, field.subject.metric, reply, baselines_[i], clear);
            if (!rates_ || !field.hasRate()) field.edit.write(text);
        }
    }

    // Empties all fields.
    void blank() {
        blank_ = true;
        shown_.forget();
        for (Field& field : fields_) field.edit.write("");
    }

    void showRates(bool on) override {
        rates_ = on;
        shown_.forget();
        for (Field& field : fields_) {
            if (!field.hasRate()) continue;
            auto& label = board_.template control<zStatic>(std::string(field.name) + "Label");
            field.edit.write("");  // it has meant something else
            const std::string rate = perSecond(label.row().text);
            label.setText(!on                        ? label.row().text
                          : label.fits(rate.c_str()) ? rate.c_str()
                                                     : shortened(rate).c_str());
            board_.setTooltipDetail(field.control, "");
        }
    }

    void write(const metrics::Rates* rates) override {
        if (blank_ || !rates) return;
        for (Field& field : fields_) {
            if (!field.hasRate()) continue;
            const metrics::Rate rate = rates->rate(*field.subject.group, *field.subject.metric);
            field.edit.write(rateText(rate));
            const auto* why = std::get_if<metrics::Unknown>(&rate);
            board_.setTooltipDetail(field.control, why ? metrics::wordsOf(*why) : "");
        }
    }

    std::optional<metrics::Subject> counted(const zControl& control,
                                            const metrics::Place& place) const override {
        for (const Field& field : fields_) {
            if (&control != &field.control || !field.value.counter) continue;
            metrics::Subject subject = field.subject;
            subject.place = place;
            return subject;
        }
        return {};
    }

  private:
    struct Field {
        StatsValue<View> value;
        zEdit& control;
        const char* name;
        myEdit edit;
        metrics::Subject subject;  // of a counter

        // Numbers that go up and down count from Clear, too, but have no rate.
        bool hasRate() const { return value.counter && subject.isRate(); }
    };

    void rewrite() override { shown_.forget(); }

    zBoard& board_;
    std::vector<Field> fields_;
    ShownReply shown_;
    bool blank_ = false;
    bool rates_ = false;
};
