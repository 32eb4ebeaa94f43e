#include "metrics/value.h"

namespace metrics {

const char* wordsOf(Unknown why) {
    switch (why) {
    case Unknown::silent:
        return "the driver does not answer";
    case Unknown::notAsked:
        return "not asked, since the driver does not answer";
    case Unknown::refused:
        return "the driver refuses to say";
    case Unknown::incomplete:
        return "the driver's answer is incomplete";
    case Unknown::absent:
        return "there is no such service";
    case Unknown::noAlarms:
        return "this link has no such alarm";
    case Unknown::lossOfFrame:
        return "not to be seen during loss of frame";
    case Unknown::notRegistered:
        return "no address is registered";
    case Unknown::notConnected:
        return "not connected";
    case Unknown::noCircuit:
        return "the driver does not list the virtual circuit";
    case Unknown::unnamed:
        return "the driver's code is not known";
    case Unknown::noRow:
        return "the table has no such row";
    case Unknown::pvc:
        return "a PVC has no address";
    case Unknown::noneBefore:
        return "nothing to compare with yet";
    case Unknown::driverChanged:
        return "the driver has started anew";
    case Unknown::beyondLink:
        return "the counter was set back";
    case Unknown::mayHaveWrapped:
        return "too long since the reading before";
    case Unknown::sharedKey:
        return "several rows have this key";
    }
    return "";
}

}  // namespace metrics
