// Walks the window's accessibility tree and describes its objects for the assertions.
#include "tests/support/ui/accessible_tree.h"

#include <QAccessibleInterface>
#include <QGuiApplication>
#include <QStringList>
#include <vector>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

namespace quorrin::testing {
namespace {

void walk(QAccessibleInterface* node, int depth, int parent, std::vector<AccessibleNode>& out) {
    if (!node || !node->isValid())
        return;
    const int index = static_cast<int>(out.size());
    out.push_back({.role = node->role(),
                   .name = node->text(QAccessible::Name),
                   .description = node->text(QAccessible::Description),
                   .state = node->state(),
                   .object = node->object(),
                   .depth = depth,
                   .parent = parent});
    for (int i = 0; i < node->childCount(); ++i)
        walk(node->child(i), depth + 1, index, out);
}

std::vector<AccessibleEvents::Event>& recorded() {
    static std::vector<AccessibleEvents::Event> events;
    return events;
}

}  // namespace

void turnAccessibilityOn() {
    QPlatformIntegration* integration = QGuiApplicationPrivate::platformIntegration();
    if (QPlatformAccessibility* accessibility =
            integration ? integration->accessibility() : nullptr)
        accessibility->setActive(true);
}

std::vector<AccessibleNode> accessibleTree(QQuickWindow& window) {
    std::vector<AccessibleNode> nodes;
    walk(QAccessible::queryAccessibleInterface(&window), 0, -1, nodes);
    return nodes;
}

std::vector<AccessibleNode> showingNodes(QQuickWindow& window) {
    std::vector<AccessibleNode> nodes;
    // Where each node of the whole tree went, so that parents point into the shorter list.
    std::vector<int> moved;
    for (AccessibleNode& node : accessibleTree(window)) {
        if (!node.showing()) {
            moved.push_back(-1);
            continue;
        }
        moved.push_back(static_cast<int>(nodes.size()));
        node.parent = node.parent >= 0 ? moved[node.parent] : -1;
        nodes.push_back(std::move(node));
    }
    return nodes;
}

const AccessibleNode* findNode(const std::vector<AccessibleNode>& nodes, QAccessible::Role role,
                               const QString& name) {
    for (const AccessibleNode& node : nodes)
        if (node.role == role && node.name == name && node.showing())
            return &node;
    return nullptr;
}

const AccessibleNode* nodeOf(const std::vector<AccessibleNode>& nodes, const QObject* object) {
    for (const AccessibleNode& node : nodes)
        if (node.object == object)
            return &node;
    return nullptr;
}

bool isInteractive(QAccessible::Role role) {
    switch (role) {
        case QAccessible::Button:
        case QAccessible::CheckBox:
        case QAccessible::RadioButton:
        case QAccessible::ComboBox:
        case QAccessible::EditableText:
        case QAccessible::Slider:
        case QAccessible::SpinBox:
        case QAccessible::PageTab:
        case QAccessible::ListItem:
        case QAccessible::MenuItem:
        case QAccessible::Link:
            return true;
        default:
            return false;
    }
}

AccessibleEvents::AccessibleEvents() {
    recorded().clear();
    QAccessible::installUpdateHandler(&AccessibleEvents::record);
}

AccessibleEvents::~AccessibleEvents() {
    QAccessible::installUpdateHandler(nullptr);
    recorded().clear();
}

QStringList AccessibleEvents::namesOf(const QObject* object) const {
    QStringList names;
    for (const Event& event : recorded())
        if (event.type == QAccessible::NameChanged && event.object == object)
            names.append(event.name);
    return names;
}

void AccessibleEvents::record(QAccessibleEvent* event) {
    QAccessibleInterface* node = event->accessibleInterface();
    recorded().push_back({.type = event->type(),
                          .object = event->object(),
                          .name = node ? node->text(QAccessible::Name) : QString()});
}

}  // namespace quorrin::testing
