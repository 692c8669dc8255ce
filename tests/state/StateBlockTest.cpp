#include "tests/state/StateTestObjects.h"

#include <sstream>

namespace {

class Events final : public GenericPlugin::Listener {
public:
    void pluginEvent(std::int32_t code, std::int32_t) override { codes.push_back(code); }
    bool has(std::int32_t code) const { return std::find(codes.begin(), codes.end(), code) != codes.end(); }
    std::vector<std::int32_t> codes;
};

// The block behind the values, by its table.
Bytes stateBlock(std::int32_t version, std::int32_t instanceId, std::string_view instanceName, bool modified) {
    Bytes bytes;
    bytes.raw("ZK3p").i32(version).string("Sky").i32(instanceId).i32(instanceName.empty() ? 1 : 0).string(instanceName);
    if (version >= 2)
        bytes.i32(modified ? 1 : 0);
    if (version >= 3)
        bytes.raw("CuSV").i32(1).i32(1).string("k").string("v");
    return bytes;
}

class StateBlockTest : public StateTest {
protected:
    bool read(const std::string& bytes) {
        std::istringstream stream(bytes);
        return plugin.readState(stream);
    }

    ZelkPlugin plugin;
};

TEST_F(StateBlockTest, IsWrittenByItsTableAndReadInAllVersions) {
    plugin.currentPreset().setName("Sky");
    plugin.customValues = {{"k", "v"}};
    plugin.setInstanceName("Lead");
    plugin.currentPreset().setModified(true);
    std::ostringstream stream;
    ASSERT_TRUE(plugin.writeState(stream));
    EXPECT_EQ(stream.str(), stateBlock(3, -1, "Lead", true).text);
    for (const int version : {1, 2, 3}) {
        plugin.currentPreset().setName("other");
        plugin.currentPreset().setPath("/gone");
        plugin.currentPreset().setModified(true);
        plugin.customValues = {{"old", "1"}};
        Events events;
        plugin.setListener(&events);
        EXPECT_TRUE(read(stateBlock(version, -1, "Bass", version == 3).text));
        plugin.setListener(nullptr);
        EXPECT_EQ(plugin.currentPreset().name(), "Sky");
        EXPECT_EQ(plugin.currentPreset().path(), "");
        EXPECT_EQ(plugin.instanceName(), "Bass");
        EXPECT_EQ(plugin.currentPreset().modified(), version == 3);
        EXPECT_EQ(plugin.customValues, version == 3 ? (CustomValues{{"k", "v"}}) : CustomValues{});
        EXPECT_TRUE(events.has(GenericPlugin::eventPreset) && events.has(GenericPlugin::eventCustomValues));
    }
    EXPECT_TRUE(read(stateBlock(3, -1, "", false).text));
    EXPECT_EQ(plugin.instanceName(), "Zelk");
}

TEST_F(StateBlockTest, DamageChangesNothing) {
    const std::string whole = stateBlock(3, -1, "Bass", true).text;
    std::string negative = whole;
    negative[whole.size() - 11] = '\xFF'; // the top byte of the count of pairs
    plugin.currentPreset().setName("kept");
    std::vector<std::string> damaged{"ZK3q" + whole.substr(4), negative};
    for (std::size_t size = 0; size < whole.size(); ++size)
        damaged.push_back(whole.substr(0, size));
    for (const std::string& bytes : damaged)
        EXPECT_FALSE(read(bytes)) << bytes.size();
    EXPECT_EQ(plugin.currentPreset().name(), "kept");
    EXPECT_EQ(plugin.instanceName(), "Zelk");
}

TEST_F(StateBlockTest, AnIdIsTakenOnlyWhenNobodyHasItAndItsSpectrumCanBeNamed) {
    ZelkPlugin other;
    ASSERT_EQ(other.instanceId(), 0);
    EXPECT_TRUE(read(stateBlock(3, 0, "", false).text));
    EXPECT_EQ(plugin.givenInstanceId(), -1);
    EXPECT_TRUE(read(stateBlock(3, 70000, "", false).text));
    EXPECT_EQ(plugin.givenInstanceId(), -1);
    EXPECT_TRUE(read(stateBlock(3, 65535, "", false).text));
    EXPECT_EQ(plugin.instanceId(), 65535);
    ZelkPlugin third;
    EXPECT_EQ(third.instanceId(), 1) << "the lowest free one, when none is left above";
}

} // namespace
