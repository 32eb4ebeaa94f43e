// trace TRACE on|off: a switch of the driver's own traces.
#include "ctl/changing.h"
#include "driver/requestblocks.h"

#include <algorithm>
#include <fcntl.h>
#include <fmt/format.h>
#include <memory>

namespace {

constexpr struct {
    const char* name;
    TraceRequest::Component component;
} traces[] = {{"api", TraceRequest::accessInterface},
              {"signalling", TraceRequest::signalling},
              {"ilmi", TraceRequest::ilmi}};

struct Trace {
    std::string name, state;

    Output operator()(Session& session) const {
        requireRoot();
        DriverChannel& channel = session.channel();
        if (!session.openDriver(O_RDONLY)) throw session.noDriver();
        TraceRequest request(channel);
        const auto trace = std::ranges::find_if(traces, [&](auto& row) { return row.name == name; });
        const bool taken = request.switchTrace(trace->component, state == "on") == 0;
        if (request.outcome() == Outcome::absent) noDriver();
        const RequestResult answer = taken               ? RequestResult::taken
                                     : request.decided() ? RequestResult::refused
                                                         : RequestResult::unanswered;
        return output(answer, request.header().Resp);
    }

  private:
    [[noreturn]] static void noDriver() { throw Failure(Status::noDriver, "there is no driver"); }

    Output output(RequestResult answer, int resp) const {
        Output output;
        const char* result = "ok";
        if (answer == RequestResult::refused) {
            output.status = Status::refused;
            output.message = fmt::format("the driver refused to switch the trace ({})", resp);
            result = "refused";
        } else if (answer == RequestResult::unanswered) {
            output.status = Status::silent;
            output.message = "the driver did not answer: whether the trace is switched is unknown";
            result = "silent";
        }
        if (!output.message.empty()) output.where = name;
        Tree requests = Tree::array();
        requests.add(requestTree({name, requestOf(RequestId::traceSwitch).trace, {}, answer, resp}));
        output.tree.put("requests", std::move(requests));
        output.tree.put("driver", {true, {}});
        output.tree.put("result", {result, {}});
        return output;
    }
};

}  // namespace

Run addTrace(CLI::App& command) {
    const auto trace = std::make_shared<Trace>();
    std::vector<std::string> names;
    for (const auto& row : traces) names.emplace_back(row.name);
    command.add_option("TRACE", trace->name, "api, signalling or ilmi")
        ->required()
        ->check(CLI::IsMember(names));
    command.add_option("STATE", trace->state, "on or off")
        ->required()
        ->check(CLI::IsMember(std::vector<std::string>{"on", "off"}));
    return [trace](Session& session) { return (*trace)(session); };
}
