# The phonebook side of the main window: tabs, list, details.
larkspan_library(larkspan_contact_items
  SOURCES
    ContactItems.cpp ContactItems.h
  LINK larkspan_controls larkspan_addressbook_core)
