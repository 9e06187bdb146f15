// ActivityModel: the Store's activity history, newest first, one row per record.
#include "tests/support/temp_home.h"
#include "tests/support/ui/qt_printing.h"
#include "ui/date_text.h"
#include "ui/store_facade.h"

#include <gtest/gtest.h>

namespace quorrin::ui {
namespace {

using Role = ActivityModel::Role;

QString value(ActivityModel& model, int row, Role role) {
    return model.data(model.index(row), int(role)).toString();
}

TEST(ActivityModel, NewestFirstWithTextAndTimeOfDay) {
    testing::TempHome home;
    StoreFacade facade;
    ActivityModel& model = *facade.activity();
    facade.log(QStringLiteral("a"));
    facade.log(QStringLiteral("b"));
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(value(model, 0, Role::text), "b");
    EXPECT_EQ(value(model, 1, Role::text), "a");
    const QDateTime date = model.data(model.index(0), int(Role::date)).toDateTime();
    EXPECT_EQ(value(model, 0, Role::time), timeOfDay(date));
    EXPECT_EQ(QString::fromStdString(facade.store().activity().front().id()),
              value(model, 0, Role::id));
}

TEST(ActivityModel, TheSameTextTwiceIsTwoRowsWithTheirOwnIdentity) {
    testing::TempHome home;
    StoreFacade facade;
    ActivityModel& model = *facade.activity();
    facade.log(QStringLiteral("Kept: a.txt"));
    facade.log(QStringLiteral("Kept: a.txt"));
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(value(model, 0, Role::text), value(model, 1, Role::text));
    EXPECT_NE(value(model, 0, Role::id), value(model, 1, Role::id));
}

TEST(ActivityModel, RolesAreNamedForTheDelegates) {
    testing::TempHome home;
    StoreFacade facade;
    const auto names = facade.activity()->roleNames();
    EXPECT_EQ(names.value(int(Role::id)), "activityId");
    EXPECT_EQ(names.value(int(Role::text)), "text");
    EXPECT_EQ(names.value(int(Role::time)), "time");
}

}  // namespace
}  // namespace quorrin::ui
