#include "controls/TabAccess.h"

#include "controls/TabControl.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>

#include <map>

namespace {

/// One tab, for as long as its control lives.
class OneTab final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    OneTab(TabControl* control, int position) : m_control(control), m_position(position) {}

    [[nodiscard]] bool isValid() const override {
        return m_control != nullptr && m_position < m_control->Count();
    }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(m_control.data());
    }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return isValid() && kind == QAccessible::Name ? m_control->Caption(m_position) : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    [[nodiscard]] QRect rect() const override {
        const QRect place = isValid() ? m_control->TabRect(m_position) : QRect();
        return place.isEmpty() ? QRect() : QRect(m_control->mapToGlobal(place.topLeft()), place.size());
    }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::PageTab; }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.selectable = true;
        state.focusable = true;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.selected = m_control->Selected() == m_position;
        state.focused = state.selected && m_control->hasFocus();
        state.offscreen = m_control->TabRect(m_position).isEmpty();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    [[nodiscard]] QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override {
        if (isValid() && name == pressAction()) {
            m_control->Select(m_position);
        }
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QPointer<TabControl> m_control;
    int m_position;
};

/// The control itself: a list of tabs.
class AllTabs final : public QAccessibleWidget {
public:
    explicit AllTabs(TabControl* control)
        : QAccessibleWidget(control, QAccessible::PageTabList), m_control(control) {}
    ~AllTabs() override {
        for (const auto& [position, id] : m_ids) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }

    [[nodiscard]] int childCount() const override { return m_control->Count(); }
    [[nodiscard]] QAccessibleInterface* child(int position) const override {
        if (position < 0 || position >= m_control->Count()) {
            return nullptr;
        }
        auto found = m_ids.find(position);
        if (found == m_ids.end()) {
            const auto id = QAccessible::registerAccessibleInterface(new OneTab(m_control, position));
            found = m_ids.emplace(position, id).first;
        }
        return QAccessible::accessibleInterface(found->second);
    }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        return child(m_control->TabUnder(m_control->mapFromGlobal(QPoint(x, y))));
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* wanted) const override {
        for (const auto& [position, id] : m_ids) {
            if (QAccessible::accessibleInterface(id) == wanted) {
                return position;
            }
        }
        return -1;
    }
    [[nodiscard]] QAccessibleInterface* focusChild() const override {
        return m_control->hasFocus() ? child(m_control->Selected()) : nullptr;
    }

private:
    TabControl* m_control;
    mutable std::map<int, QAccessible::Id> m_ids;
};

QAccessibleInterface* MakeInterface(const QString&, QObject* object) {
    auto* control = qobject_cast<TabControl*>(object);
    return control != nullptr ? new AllTabs(control) : nullptr;
}

}  // namespace

void TabAccess::Install() {
    QAccessible::installFactory(MakeInterface);
}

void TabAccess::NotifySelection(TabControl& control, int position) {
    if (!QAccessible::isActive()) {
        return;
    }
    QAccessibleEvent selection(&control, QAccessible::Selection);
    selection.setChild(position);
    QAccessible::updateAccessibility(&selection);
    QAccessibleEvent focus(&control, QAccessible::Focus);
    focus.setChild(position);
    if (control.hasFocus()) {
        QAccessible::updateAccessibility(&focus);
    }
}
