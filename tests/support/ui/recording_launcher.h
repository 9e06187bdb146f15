// RecordingLauncher: stands in for the desktop while a test runs, noting what the window asked
// of it and answering as told.
#pragma once

#include "ui/desktop.h"

#include <QList>
#include <QString>
#include <QUrl>

namespace quorrin::testing {

class RecordingLauncher : public ui::Launcher {
public:
    // Puts itself in place of the system's launcher until destroyed.
    RecordingLauncher();
    ~RecordingLauncher() override;

    void openUrl(const QUrl& url, std::function<void(bool)> done) override;
    void showItems(const QList<QUrl>& items, std::function<void(bool)> done) override;
    void setClipboardText(const QString& text) override;

    // What the answers are: whether URLs of each kind open and whether a file manager shows items.
    bool opensTrash = true;
    bool opensFiles = true;
    bool showsItems = true;

    QList<QUrl> opened;
    QList<QUrl> shown;
    QStringList clipboard;
};

}  // namespace quorrin::testing
