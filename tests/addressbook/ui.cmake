larkspan_test(test_addressbook_ui GUI
  SOURCES
    ContactItemsTest.cpp
    ContactListEditTest.cpp
    ContactListMenuTest.cpp
    ContactListOffice.h
    ContactListViewTest.cpp
    ContactMenuTest.cpp
    DeleteContactsTest.cpp
    GroupNamesTest.cpp
    GroupTabsOffice.h
    GroupTabsStartTest.cpp
    GroupTabsTest.cpp
    PhonebookFormTest.cpp
    PhonebookOffice.cpp PhonebookOffice.h
    PumpedEventsTest.cpp
    TabMenuTest.cpp
    frmTabNameTest.cpp
    mdlTabControlTest.cpp
  LINK larkspan_addressbook_ui larkspan_test_office larkspan_test_engine)
