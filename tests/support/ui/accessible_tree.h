// The window as a screen reader reads it: the QAccessibleInterface tree walked from the window, and
// the accessibility events the window sends while a test runs.
#pragma once

#include <QAccessible>
#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QString>
#include <vector>

namespace quorrin::testing {

// Turns the platform's accessibility on, as an assistive technology does when it connects; the
// controls then expose their roles and states. Call once, with the application made.
void turnAccessibilityOn();

struct AccessibleNode {
    QAccessible::Role role = QAccessible::NoRole;
    QString name;
    QString description;
    QAccessible::State state;
    QPointer<QObject> object;
    int depth = 0;
    // The index in the walk of the nearest ancestor node, -1 for the window.
    int parent = -1;

    bool showing() const { return !state.invisible; }
};

// Every node under the window (popups included), depth first, in the order a reader walks them.
std::vector<AccessibleNode> accessibleTree(QQuickWindow& window);
// Only the nodes a reader reaches now: the ones not invisible (a hidden node's showing children,
// if any, get parent -1).
std::vector<AccessibleNode> showingNodes(QQuickWindow& window);
// The showing node of this role and name; nullptr when there is none.
const AccessibleNode* findNode(const std::vector<AccessibleNode>& nodes, QAccessible::Role role,
                               const QString& name);
// The node exposing this object, or nullptr.
const AccessibleNode* nodeOf(const std::vector<AccessibleNode>& nodes, const QObject* object);
// A role a user acts on (buttons, tabs, boxes, fields, list items), which must have a name.
bool isInteractive(QAccessible::Role role);

// Records the accessibility events sent while it lives (the platform bridge does not see them).
class AccessibleEvents {
public:
    struct Event {
        QAccessible::Event type;
        QPointer<QObject> object;
        // The object's accessible name when the event was sent.
        QString name;
    };

    AccessibleEvents();
    ~AccessibleEvents();
    AccessibleEvents(const AccessibleEvents&) = delete;
    AccessibleEvents& operator=(const AccessibleEvents&) = delete;

    // The names the object had at each of its NameChanged events, in order.
    QStringList namesOf(const QObject* object) const;

private:
    static void record(QAccessibleEvent* event);
};

}  // namespace quorrin::testing
