// The header's bar: indeterminate while the walk runs, then the share of bytes read while contents
// are compared, hidden when the work is done.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QObject>
#include <QQuickItem>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

struct BarState {
    bool indeterminate;
    double value;
    double progress;
};

TEST(ShellProgressBar, DeterminateWhileContentsAreCompared) {
    UiFixture ui;
    ui.home.writeFile("Documents/a.mov", std::string(300'000, 'x'));
    ui.home.writeFile("Documents/b.mov", std::string(300'000, 'x'));
    ui.open();
    ui.pressSidebar("Duplicates");
    QQuickItem* bar = ui.item("busyBar");
    ASSERT_NE(bar, nullptr);
    // The bar as drawn each time the Store's measure changes (its bindings run first).
    std::vector<BarState> states;
    QObject::connect(&ui.store(), &ui::StoreFacade::progressChanged, bar, [&] {
        states.push_back({bar->property("indeterminate").toBool(),
                          bar->property("value").toDouble(), ui.store().progress()});
    });
    // The walk gives no measure: the bar starts indeterminate. (Read as the job starts: on a fast
    // machine the walk may be over before the click returns.)
    std::optional<bool> indeterminateAtStart;
    QObject::connect(&ui.store(), &ui::StoreFacade::busyChanged, bar, [&] {
        if (ui.store().busy() && !indeterminateAtStart)
            indeterminateAtStart = bar->property("indeterminate").toBool();
    });
    ui.click("pageActionButton");
    ui.settle();
    EXPECT_EQ(indeterminateAtStart, true);

    bool measured = false, complete = false;
    for (const BarState& state : states) {
        if (state.progress < 0) {
            EXPECT_TRUE(state.indeterminate);
            continue;
        }
        measured = true;
        EXPECT_FALSE(state.indeterminate);
        EXPECT_DOUBLE_EQ(state.value, state.progress);
        complete = complete || state.value == 1.0;
    }
    EXPECT_TRUE(measured);
    EXPECT_TRUE(complete);
    EXPECT_FALSE(ui.isShown("busyBar"));
    EXPECT_TRUE(bar->property("indeterminate").toBool());
}

}  // namespace
}  // namespace quorrin::testing
