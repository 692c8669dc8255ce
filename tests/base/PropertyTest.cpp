#include "base/Property.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

class Thermostat final : public PropertyOwner {
public:
    Property<float> wanted{this, 20.0f};
    Property<std::string> room{this, "hall"};
    LimitedProperty<float> valve{this, 0.0f, 1.0f, 0.5f};
    LimitedProperty<int> stage{this, 1, 3, 1};
    std::vector<const AbstractProperty*> changes;
    std::vector<float> seen; // `wanted` as it was when the notification came

    void propertyChanged(AbstractProperty& changed) override {
        changes.push_back(&changed);
        seen.push_back(wanted);
        if (&changed == &room && room.get() == "cellar")
            wanted = 12.0f; // an assignment from inside a notification
    }
};

TEST(Property, TellsItsOwnerOfRealChangesOnlyAndAfterTheValueIsStored) {
    Thermostat thermostat;
    thermostat.wanted = 20.0f;
    thermostat.room = std::string("hall");
    thermostat.wanted = notANumber;
    EXPECT_TRUE(thermostat.changes.empty());
    EXPECT_EQ(thermostat.wanted, 20.0f);
    thermostat.wanted = 21.0f;
    EXPECT_EQ(thermostat.seen, std::vector<float>{21.0f});
    thermostat.room = std::string("cellar");
    EXPECT_EQ(thermostat.changes,
              (std::vector<const AbstractProperty*>{&thermostat.wanted, &thermostat.room, &thermostat.wanted}));
    EXPECT_EQ(thermostat.wanted, 12.0f);

    Property<int> unowned(nullptr, 1);
    ValueAssignable<int>& anywhere = unowned;
    anywhere.assign(2);
    EXPECT_EQ(unowned, 2);
}

TEST(LimitedProperty, ClampsOnEveryRoadAndNotifiesOncePerChange) {
    Thermostat thermostat;
    thermostat.valve = 2.0f;
    EXPECT_EQ(thermostat.valve, 1.0f);
    thermostat.valve = 2.0f;
    EXPECT_EQ(thermostat.changes.size(), 1u);
    thermostat.valve = notANumber;
    EXPECT_EQ(thermostat.valve, 1.0f);
    Property<float>& asProperty = thermostat.valve;
    asProperty = -3.0f;
    EXPECT_EQ(thermostat.valve, 0.0f);
    ValueAssignable<int>& asTarget = thermostat.stage;
    asTarget.assign(0); // the minimum, which it has already
    EXPECT_EQ(thermostat.changes.size(), 2u);
    asTarget.assign(9);
    EXPECT_EQ(thermostat.stage, 3);
}

} // namespace
