// What zelk-host tells: info and response.
#include "tests/tools/HostProgram.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

TEST(Info, JsonEscapesWhatThePluginSays) {
    const HostProgram host;
    const HostProgram::Result result = host.run({"info", "--json", ZELK_TEST_PLUGIN});
    ASSERT_EQ(result.status, 0) << result.errors;
    for (const char* expected :
         {R"("name": "Test \"Gain\"\u000a\\")", "\"description\": \"\\u0001 f\xC3\xBCr Tests \xEF\xBF\xBD\"",
          R"("name": "Trouble \"quoted\"")", R"("latency": 100)", R"("tail": 50)"})
        EXPECT_NE(result.output.find(expected), std::string::npos) << expected << "\n" << result.output;
    for (const char c : result.output)
        ASSERT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= 0x20) << "a raw control character";
}

TEST(Info, TellsOurPortsLayoutsAndParameters) {
    const HostProgram host;
    const HostProgram::Result result = host.run({"info", ZELK_PLUGIN_FILE});
    ASSERT_EQ(result.status, 0) << result.errors;
    for (const char* expected : {"com.Tessivane.preset-discovery.Zelk.3", "\"Sidechain In\" (id 1): 2 channels, stereo",
                                 "28  \"9.1.6 Dolby Atmos\": 16 channels", "358 parameters", "Band 24 Solo"})
        EXPECT_NE(result.output.find(expected), std::string::npos) << expected;
}

TEST(ResponseCommand, MeasuresGainAndPolarityWithTheLatencyTakenOut) {
    const HostProgram host;
    const HostProgram::Result result = host.run(
        {"response", ZELK_TEST_PLUGIN, "--set", "Gain=6 dB", "--csv", host.path("r.csv"), "--png", host.path("r.png")});
    ASSERT_EQ(result.status, 0) << result.errors;
    std::istringstream csv(host.readText("r.csv"));
    std::string line;
    std::getline(csv, line);
    EXPECT_EQ(line, "frequency_hz,magnitude_db,phase_degrees");
    int rows = 0;
    double highest = 0.0;
    while (std::getline(csv, line)) {
        double hz = 0.0;
        double db = 0.0;
        double degrees = 0.0;
        ASSERT_EQ(std::sscanf(line.c_str(), "%lf,%lf,%lf", &hz, &db, &degrees), 3) << line;
        ASSERT_NEAR(db, 6.0, 1e-4) << line;
        ASSERT_NEAR(degrees, 0.0, 1e-3) << line;
        ASSERT_GE(hz, highest);
        highest = hz;
        ++rows;
    }
    EXPECT_GT(rows, 1000);
    EXPECT_EQ(highest, 24000.0);
    const std::string png = host.readText("r.png");
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
    EXPECT_EQ(png.substr(png.size() - 8, 4), "IEND");

    const HostProgram::Result inverted = host.run({"response", ZELK_TEST_PLUGIN, "--set", "Polarity=Inverted"});
    EXPECT_NE(inverted.output.find("180.00"), std::string::npos) << inverted.output;
}

} // namespace
