// Somebody who works on adapter 1 of the configuration below the present root.
#pragma once

#include "change/adapterchange.h"

struct Administrator {
    AtmDevices mine;
    Configuration configuration{"tarvolin", mine};
    AtmDevices before;

    Administrator() {
        EXPECT_TRUE(configuration.read());
        begin();
    }

    AtmLEC& lec(std::size_t number) { return mine.lec[0][number - 1]; }

    void begin() {
        configuration.readAgain(0);
        before = mine;
    }

    // Ends the dialog. Answers the questions, which are kept, with `answer`.
    ChangeResult end(bool settings = true, bool answer = true, bool driver = false) {
        questions.clear();
        AdapterChange change(configuration,
                             {.adapters = {0}, .settings = settings, .before = before, .driver = driver});
        while (const std::optional<Question> question = change.run()) {
            questions.push_back(question->text);
            change.answer(answer);
        }
        return change.result();
    }
    std::vector<std::string> questions;
};
