// The pages read the time from the Store's platform, so a fixed clock fixes what they show.
#include "engine/calendar.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"
#include "tests/support/ui/qt_printing.h"
#include "ui/date_text.h"
#include "ui/file_list_model.h"
#include "ui/find_older_text.h"
#include "ui/format.h"
#include "ui/store_facade.h"

#include <QTest>
#include <chrono>

#include <gtest/gtest.h>

namespace quorrin::ui {
namespace {

using std::chrono::hours;

class StoreClock : public ::testing::Test {
protected:
    StoreClock() {
        for (const char* name : {"Documents", "Downloads", "Desktop"})
            home.makeDir(name);
        // Five years from now, by the system clock.
        platform.fixedNow = platform::system().now() + hours(24 * 365 * 5);
    }

    testing::TempHome home;
    testing::FaultPlatform platform;
};

TEST_F(StoreClock, TheOlderHintCountsFromTheStoreClock) {
    StoreFacade facade(platform);
    Format format;
    const QString hint = format.olderHint(QStringLiteral("Older than"), 6, &facade);
    EXPECT_EQ(hint, olderHint(Engine::OlderMatch::older, 6, *platform.fixedNow,
                              Engine::Calendar::current()));
    EXPECT_NE(hint, format.olderHint(QStringLiteral("Older than"), 6, nullptr));
}

TEST_F(StoreClock, TheFindOlderListCountsFromTheStoreClock) {
    // Modified a month ago: not older than 24 months now, but by the Store's clock it is.
    const std::string file = home.writeFile("Documents/recent.txt");
    const auto monthAgo = std::chrono::duration_cast<std::chrono::seconds>(
        (platform::system().now() - hours(24 * 30)).time_since_epoch());
    testing::setModified(file, monthAgo.count());

    StoreFacade facade(platform);
    FileListModel model;
    model.setStore(&facade);
    model.setPage(QStringLiteral("FindOlder"));
    model.setDateBasis(QStringLiteral("Last modified date"));
    model.setAgeMonths(24);
    facade.scanOlder();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !facade.busy() && !model.computing(); }, 20000));
    ASSERT_EQ(model.count(), 1);
    EXPECT_EQ(model.rows().front().url, file);
}

TEST_F(StoreClock, TheCustomRangeEndsAtTheStoreClock) {
    StoreFacade facade(platform);
    FileListModel model;
    model.setStore(&facade);
    EXPECT_EQ(model.throughDate(), localDateTime(*platform.fixedNow));
    const auto twoYearsBefore = Engine::Calendar::current().addingMonths(*platform.fixedNow, -24);
    ASSERT_TRUE(twoYearsBefore);
    EXPECT_EQ(model.fromDate(), localDateTime(*twoYearsBefore));
}

}  // namespace
}  // namespace quorrin::ui
