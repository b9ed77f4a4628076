larkspan_test(test_addressbook_ui GUI
  SOURCES
    ContactItemsTest.cpp
    ContactListViewTest.cpp
    ContactMenuTest.cpp
    DeleteContactsTest.cpp
    GroupTabsTest.cpp
    GroupTabsStartTest.cpp
    PhonebookFormTest.cpp
    PhonebookOffice.cpp PhonebookOffice.h
    TabMenuTest.cpp
    frmTabNameTest.cpp
    mdlTabControlTest.cpp
  LINK larkspan_addressbook_ui larkspan_test_office)
