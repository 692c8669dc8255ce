// zelk-host info: what a plug-in is and offers.
#include "tools/host/Commands.h"
#include "tools/host/PluginFacts.h"
#include "tools/host/Session.h"

#include <cstdio>

int infoCommand(const std::vector<std::string>& words) {
    Options options("info",
                    "Tells what the plug-in is and offers: ports, port configurations, parameters with range,\n"
                    "default and texts, latency, tail and extensions; after the state wanted has been loaded.",
                    {"FILE.clap"});
    options.add({"--json", "", "for programs"});
    options.add({"--rate", "HZ", "sample rate at which latency and tail are asked (default: 48000)"});
    Session::addOptions(options);
    options.parse(words);
    if (options.wantsHelp()) {
        std::fputs(options.help().c_str(), stdout);
        return 0;
    }
    const double rate = options.number("--rate", 48000.0, Session::leastRate, Session::mostRate);
    if (const auto state = options.text("--save-state"))
        demandApart(Session::inputFiles(options), {*state});
    Session session(options);
    session.prepare();
    const PluginFacts facts = gatherFacts(session, rate);
    std::fputs((options.has("--json") ? factsAsJson(facts) : factsAsText(facts)).c_str(), stdout);
    return session.finish();
}
