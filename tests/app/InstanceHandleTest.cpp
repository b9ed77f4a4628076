#include "app/TestMachine.h"
#include "app/mdlInstance.h"

#include <gtest/gtest.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

const QString Class = Q("LarkspanMainForm");

}  // namespace

TEST(InstanceHandle, IsReadBackAsItWasWritten) {
    TestMachine machine;
    const Machine seams = machine.Seams();
    EXPECT_EQ(mdlInstance::ReadInstanceHandle(seams), 0U) << "no file";
    mdlInstance::WriteInstanceHandle(seams, 4194311);
    EXPECT_EQ(mdlInstance::ReadInstanceHandle(seams), 4194311U);
    mdlInstance::WriteInstanceHandle(seams, 12);
    EXPECT_EQ(mdlInstance::ReadInstanceHandle(seams), 12U) << "rewritten at each start";
}

TEST(InstanceHandle, AFileWithoutANumberReadsAsNone) {
    TestMachine machine;
    ASSERT_TRUE(
        machine.Office.Files.Replace(machine.Office.Folders.TempFolder() + Q("hwnd.sms"), "no number"));
    EXPECT_EQ(mdlInstance::ReadInstanceHandle(machine.Seams()), 0U);
}

TEST(InstanceHandle, DeleteInstanceMarkerDeletesTheMarkerAndLeavesTheHandle) {
    TestMachine machine;
    const QString temp = machine.Office.Folders.TempFolder();
    ASSERT_TRUE(machine.Office.Files.Replace(temp + Q("hwnd.app"), "1"));
    mdlInstance::WriteInstanceHandle(machine.Seams(), 12);
    mdlInstance::DeleteInstanceMarker(machine.Seams());
    EXPECT_FALSE(machine.Office.Files.Exists(temp + Q("hwnd.app")));
    EXPECT_TRUE(machine.Office.Files.Exists(temp + Q("hwnd.sms")));
    mdlInstance::DeleteInstanceMarker(machine.Seams());
}

TEST(InstanceHandle, TheFormClassHasSixteenCharacters) {
    EXPECT_EQ(mdlInstance::FormClass.size(), mdlInstance::FormClassLength);
}

TEST(ActivatePreviousInstance, FindsTheWindowByClassAndTitle) {
    TestMachine machine;
    machine.Desktop.Add(11, Q("Editor"), Q("Larkspan Messenger"));
    machine.Desktop.Add(12, Class, Q("Larkspan Messenger - Schedule"));
    machine.Desktop.Add(13, Class, Q("Larkspan Messenger"));
    mdlInstance::ActivatePreviousInstance(machine.Seams());
    EXPECT_EQ(machine.Desktop.Calls, (QStringList{Q("show request to 13"), Q("foreground 13")}));
    EXPECT_EQ(machine.OneCopy.ShowRequests, 0);
}

TEST(ActivatePreviousInstance, ElseTakesTheFirstWindowOfTheClassWithTheChildOfOldVersions) {
    TestMachine machine;
    machine.Desktop.Add(11, Q("Editor"), Q("text"));
    machine.Desktop.Add(110, Q("BUTTON"), Q("END MESSAGE"), 11);
    machine.Desktop.Add(12, Class + Q(".1"), Q("something"));
    machine.Desktop.Add(13, Class + Q(".2"), Q("other"));
    machine.Desktop.Add(130, Q("button"), Q("end message"), 13);
    mdlInstance::ActivatePreviousInstance(machine.Seams());
    EXPECT_EQ(machine.Desktop.Calls, (QStringList{Q("children of 12"), Q("children of 13"),
                                                  Q("show request to 13"), Q("foreground 13")}))
        << "only the first 16 characters of a class count, and other classes are not searched";
}

TEST(ActivatePreviousInstance, ElseUsesTheHandleInTheFile) {
    TestMachine machine;
    machine.Desktop.All.append({99, Class, QString(), {}});
    mdlInstance::WriteInstanceHandle(machine.Seams(), 99);
    mdlInstance::ActivatePreviousInstance(machine.Seams());
    EXPECT_EQ(machine.Desktop.Calls, (QStringList{Q("show request to 99"), Q("foreground 99")}));
    EXPECT_EQ(machine.OneCopy.ShowRequests, 1) << "99 may be the window of another session";
}

TEST(ActivatePreviousInstance, AHandleInTheFileThatIsAnotherWindowsNowLeavesThatOneAlone) {
    TestMachine machine;
    machine.Desktop.All.append({99, Q("Editor"), QString(), {}});
    mdlInstance::WriteInstanceHandle(machine.Seams(), 99);
    mdlInstance::ActivatePreviousInstance(machine.Seams());
    EXPECT_TRUE(machine.Desktop.Calls.isEmpty());
    EXPECT_EQ(machine.OneCopy.ShowRequests, 1);
}

TEST(ActivatePreviousInstance, WithoutAnyHandleTheRequestGoesThroughTheSocket) {
    TestMachine machine;
    mdlInstance::ActivatePreviousInstance(machine.Seams());
    EXPECT_TRUE(machine.Desktop.Calls.isEmpty());
    EXPECT_EQ(machine.OneCopy.ShowRequests, 1);
}

TEST(ActivatePreviousInstance, AStaleHandleIsNoticedAndTheRequestGoesThroughTheSocket) {
    TestMachine machine;
    mdlInstance::WriteInstanceHandle(machine.Seams(), 99);
    mdlInstance::ActivatePreviousInstance(machine.Seams());
    EXPECT_TRUE(machine.Desktop.Calls.isEmpty());
    EXPECT_EQ(machine.OneCopy.ShowRequests, 1);
}

TEST(ActivatePreviousInstance, WhereWindowsCannotBeReachedTheRequestGoesThroughTheSocket) {
    TestMachine machine;
    machine.Desktop.Reachable = false;
    machine.Desktop.Add(13, Class, Q("Larkspan Messenger"));
    mdlInstance::ActivatePreviousInstance(machine.Seams());
    EXPECT_TRUE(machine.Desktop.Calls.isEmpty());
    EXPECT_EQ(machine.OneCopy.ShowRequests, 1);
}
