# The phonebook side of the main window: tabs, list, details.
larkspan_library(larkspan_contact_items
  SOURCES
    ContactItems.cpp ContactItems.h
  LINK larkspan_controls larkspan_addressbook_core)

larkspan_library(larkspan_addressbook_ui
  SOURCES
    ContactButtonsPanel.cpp ContactButtonsPanel.h
    ContactDetailPanel.cpp ContactDetailPanel.h
    ContactListPanel.cpp ContactListPanel.h
    ContactMenu.cpp ContactMenu.h
    GroupTabsPanel.cpp GroupTabsPanel.h
    PhonebookArea.cpp PhonebookArea.h
    PhonebookHost.h
    PhonebookSide.h
    TabMenu.cpp TabMenu.h
    frmTabName.cpp frmTabName.h frmTabName.ui
    mdlTabControl.cpp mdlTabControl.h
  LINK larkspan_contact_items larkspan_controls larkspan_addressbook_core)
