// Notes the files and folders the window asks the desktop to open or show.
#include "tests/support/ui/recording_launcher.h"

namespace quorrin::testing {

RecordingLauncher::RecordingLauncher() {
    ui::setLauncher(this);
}

RecordingLauncher::~RecordingLauncher() {
    ui::setLauncher(nullptr);
}

void RecordingLauncher::openUrl(const QUrl& url, std::function<void(bool)> done) {
    opened.append(url);
    const bool opens = url.scheme() == QLatin1String("trash") ? opensTrash : opensFiles;
    if (done)
        done(opens);
}

void RecordingLauncher::showItems(const QList<QUrl>& items, std::function<void(bool)> done) {
    shown.append(items);
    if (done)
        done(showsItems);
}

void RecordingLauncher::setClipboardText(const QString& text) {
    clipboard.append(text);
}

}  // namespace quorrin::testing
