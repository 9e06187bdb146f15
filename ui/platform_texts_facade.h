// PlatformTextsFacade: the texts that name the desktop's facilities, published to QML as the
// singleton `PlatformTexts` (the table of store/platform_texts.h this program was built with).
#pragma once

#include "store/platform_texts.h"

#include <QObject>
#include <QString>
#include <string_view>

#include <QtQml/qqmlregistration.h>

class QQmlEngine;
class QJSEngine;

namespace quorrin::ui {

class PlatformTextsFacade : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(PlatformTexts)
    QML_SINGLETON

    Q_PROPERTY(QString overviewSubtitle READ overviewSubtitle CONSTANT)
    Q_PROPERTY(QString sidebarFooter READ sidebarFooter CONSTANT)
    Q_PROPERTY(QString showInFileManager READ showInFileManager CONSTANT)
    Q_PROPERTY(QString trashConfirmation READ trashConfirmation CONSTANT)
    Q_PROPERTY(QString findOlderNote READ findOlderNote CONSTANT)
    Q_PROPERTY(QString accessNote READ accessNote CONSTANT)
    Q_PROPERTY(QString scanNote READ scanNote CONSTANT)

public:
    using QObject::QObject;
    static PlatformTextsFacade* create(QQmlEngine*, QJSEngine*) { return new PlatformTextsFacade; }

    QString overviewSubtitle() const { return text(store::platformTexts.overviewSubtitle); }
    QString sidebarFooter() const { return text(store::platformTexts.sidebarFooter); }
    QString showInFileManager() const { return text(store::platformTexts.showInFileManager); }
    QString trashConfirmation() const { return text(store::platformTexts.trashConfirmation); }
    QString findOlderNote() const { return text(store::platformTexts.findOlderNote); }
    QString accessNote() const { return text(store::platformTexts.accessNote); }
    QString scanNote() const { return text(store::platformTexts.scanNote); }

private:
    static QString text(std::string_view utf8) {
        return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
    }
};

}  // namespace quorrin::ui
