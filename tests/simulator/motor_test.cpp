#include "simulator/motor.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using simulator::Motor;
using std::chrono::milliseconds;

const Motor::TimePoint kStart{std::chrono::hours(1)};

TEST(Motor, TravelsWithoutTurningBackAndArrivesOnTime) {
    struct Row {
        double from, to;
        milliseconds
            arrival;  // distance at 100 a second, and a quarter of a second for speeding up and slowing down
    };
    const std::vector<Row> rows{
        {0, 200, milliseconds(2250)}, {50, -350, milliseconds(4250)}, {-10, -35, milliseconds(500)}};
    for (const Row &row : rows) {
        Motor motor(100, row.from);
        motor.moveTo(row.to, kStart);
        EXPECT_EQ(motor.target(), row.to);
        EXPECT_EQ(motor.position(kStart), row.from);

        const double direction = row.to > row.from ? 1 : -1;
        double before = row.from;
        for (milliseconds t(10); t < row.arrival; t += milliseconds(10)) {
            const double now = motor.position(kStart + t);
            EXPECT_GT((now - before) * direction, 0) << row.to << " at " << t.count();
            EXPECT_LE((now - before) * direction, 1.0001) << "faster than rated at " << t.count();
            EXPECT_TRUE(motor.isMoving(kStart + t));
            before = now;
        }
        EXPECT_EQ(motor.position(kStart + row.arrival), row.to);
        EXPECT_FALSE(motor.isMoving(kStart + row.arrival));
    }
}

TEST(Motor, TurnsRoundFromWhereItStandsWithoutAJump) {
    Motor motor(100, 0);
    motor.moveTo(200, kStart);
    const auto midway = kStart + milliseconds(1125);
    EXPECT_NEAR(motor.position(midway), 100, 1e-6);
    motor.moveTo(-50, midway);
    EXPECT_NEAR(motor.position(midway), 100, 1e-6);
    EXPECT_LT(motor.position(midway + milliseconds(100)), 100);
    EXPECT_EQ(motor.position(midway + std::chrono::seconds(10)), -50);
}

TEST(Motor, DoesNotStartAnewForTheTargetItHas) {
    Motor motor(100, 0);
    motor.moveTo(200, kStart);
    motor.moveTo(200, kStart + milliseconds(1000));
    EXPECT_EQ(motor.position(kStart + milliseconds(2250)), 200);
}

TEST(Motor, MovesByLessThanTheRampNeeds) {
    Motor motor(100, 0);
    motor.moveTo(1, kStart);
    EXPECT_TRUE(motor.isMoving(kStart + milliseconds(50)));
    EXPECT_NEAR(motor.position(kStart + milliseconds(50)), 0.5, 1e-6);
    EXPECT_EQ(motor.position(kStart + milliseconds(101)), 1);
}

}  // namespace
