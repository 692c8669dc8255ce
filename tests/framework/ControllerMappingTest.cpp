#include "framework/ControllerMapping.h"

#include <gtest/gtest.h>

namespace {

class ControllerMappingTest : public testing::Test {
protected:
    ControllerMappingTest() { mapping.changed.event.add(this, &ControllerMappingTest::heard); }
    void heard() { ++notifications; }

    ControllerMapping mapping;
    int notifications = 0;
};

TEST_F(ControllerMappingTest, GivesATargetToOneControllerOnlyAndTellsOnce) {
    mapping.assign(20, 5);
    notifications = 0;
    mapping.assign(74, 5);
    EXPECT_EQ(mapping.target(20), ControllerMapping::none);
    EXPECT_EQ(mapping.target(74), 5);
    EXPECT_EQ(notifications, 1);
    mapping.assign(74, 5);
    EXPECT_EQ(notifications, 1);
    mapping.assign(-1, 5);
    EXPECT_EQ(mapping.target(74), ControllerMapping::none);
    mapping.assign(3, 7);
    mapping.assign(4, 8);
    mapping.assign(3, ControllerMapping::none);
    EXPECT_EQ(mapping.target(3), ControllerMapping::none);
    EXPECT_EQ(mapping.target(4), 8);
    notifications = 0;
    mapping.clear();
    EXPECT_EQ(mapping.target(4), ControllerMapping::none);
    EXPECT_EQ(notifications, 1);
    mapping.assign(500, 1); // no such controller
    EXPECT_EQ(mapping.target(500), ControllerMapping::none);
}

} // namespace
