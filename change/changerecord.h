// What one save has done, as plain data: the manifest (history.h) and the lines for syslog (audit.h) are made
// of it.
//
// Texts are the values as people read them, of any bytes: whoever writes one somewhere escapes it.
#pragma once

#include <string>
#include <vector>

struct KeyChange {
    std::string key;  // "adapter1/lec2.mtu"
    std::string before, after;
};

struct ListChange {
    std::string key;                          // "adapter1/lec2.pvcs"
    std::vector<std::string> added, removed;  // the entries, each as a text of one line
};

enum class RequestResult { taken, refused, unanswered, notSent };

struct SentRequest {
    std::string service;  // "adapter1/lec2": what stands before the dot in a key
    std::string request;  // "LEC_INIT"
    std::string subject;  // the list entry that it is about ("PVC 0 / 204"); empty: the service as a whole
    RequestResult answer = RequestResult::notSent;
    int resp = 0;  // the header's Resp; means something when taken or refused
};

// The result of a save that was completed by another process than the one that began it: what that one sent
// to the driver is not known.
inline constexpr const char* completedLater = "completed later";

// The result of a change that has to be confirmed, until it is complete.
inline constexpr const char* cutOff = "interrupted";

struct ChangeRecord {
    std::string program = "tarvolin";
    std::string display;  // of the X server, empty without one
    std::string from;     // where the user sits: that X server, a host, a terminal
    std::string note;     // the user's words
    std::vector<KeyChange> keys;
    std::vector<ListChange> lists;
    std::vector<SentRequest> requests;  // in their order
    // What others changed meanwhile, and this save has left as they did.
    std::vector<KeyChange> takenOverKeys;
    std::vector<ListChange> takenOverLists;
    std::vector<std::string> notes;  // sentences
    std::string result = "ok";       // or the reason why the save failed
};

// The driver's answer to all requests together: unanswered if one was not answered or not sent, else refused
// if one was refused, else taken. A refused request about a service itself, not about a list entry, does
// not count if a later one was taken: a service that does not run refuses to be stopped, and can be started
// all the same.
RequestResult driverAnswer(const ChangeRecord& record);

// "taken", "refused", "unanswered" or "not sent".
const char* answerWord(RequestResult answer);
