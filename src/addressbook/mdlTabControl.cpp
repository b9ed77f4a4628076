#include "addressbook/mdlTabControl.h"

#include "addressbook/Contact.h"
#include "addressbook/TabOrder.h"
#include "core/Numbers.h"
#include "core/Settings.h"
#include "core/Trap.h"
#include "store/Phonebook.h"
#include "store/engine/Error.h"

#include <algorithm>

namespace {

void MoveTab(TabControl& tabs, int& position, int to) {
    const QString caption = tabs.Caption(position);
    const QString tag = tabs.Tag(position);
    tabs.RemoveAt(position);
    to = std::clamp(to, 0, tabs.Count());  // a saved order can have put a group at either end
    tabs.Insert(to, caption);
    tabs.SetTag(to, tag);
    position = to;
}

}  // namespace

qint16 mdlTabControl::NumberOf(const TabControl& tabs, int position) {
    qint16 number = TabOrder::NoTab;
    Trap([&] { number = Keys::Number(tabs.Tag(position)); });
    return number;
}

int mdlTabControl::TabWithTag(const TabControl& tabs, const QString& tag) {
    for (int position = 0; position < tabs.Count(); ++position) {
        if (tabs.Tag(position) == tag) {
            return position;
        }
    }
    return -1;
}

void mdlTabControl::LoadGroupTabs(const PhonebookState& state, TabControl& tabs, int& index) {
    const auto groups = mdlPhonebook::GetGroups(state);
    if (groups == nullptr) {
        const QString reason = state.PhonebookDB != nullptr ? state.PhonebookDB->LastError() : QString();
        throw engine::Failure(engine::Number::ObjectClosed, QStringLiteral("No groups: ") + reason);
    }
    for (; !groups->EndOfFile(); groups->MoveNext()) {
        tabs.Insert(index, Numbers::NullToString(groups->Value(u"grpName")));
        tabs.SetTag(index, Keys::GroupTag(Numbers::NullToLong(groups->Value(u"grpID"))));
        ++index;
    }
}

QList<qint16> mdlTabControl::GetTabIDs(const TabControl& tabs) {
    QList<qint16> numbers;
    for (int position = 0; position < tabs.Count(); ++position) {
        numbers.append(NumberOf(tabs, position));
    }
    return numbers;
}

void mdlTabControl::SaveTabOrder(const TabControl& tabs, Settings& settings) {
    settings.SetValue(SettingNames::SectionDisplay, SettingNames::TabOrder, TabOrder::Join(GetTabIDs(tabs)));
}

QList<qint16> mdlTabControl::LoadTabOrder(const Settings& settings) {
    return TabOrder::Split(
        settings.GetValue(SettingNames::SectionDisplay, SettingNames::TabOrder, QString()));
}

void mdlTabControl::RestoreTabOrder(TabControl& tabs, const Settings& settings) {
    const QList<TabOrder::Move> moves = TabOrder::Moves(GetTabIDs(tabs), LoadTabOrder(settings));
    for (const TabOrder::Move& move : moves) {
        tabs.Move(move.From, move.To);
    }
}

bool mdlTabControl::IsSystemTab(const TabControl& tabs, int position) {
    return NumberOf(tabs, position) < 0;
}

void mdlTabControl::MoveTabUp(TabControl& tabs, int& position) {
    if (!IsSystemTab(tabs, position) && position != 1) {
        MoveTab(tabs, position, position - 1);
    }
}

void mdlTabControl::MoveTabDown(TabControl& tabs, int& position) {
    if (!IsSystemTab(tabs, position) && position != tabs.Count() - 3) {
        MoveTab(tabs, position, position + 1);
    }
}
