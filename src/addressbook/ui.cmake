# The phonebook side of the main window: tabs, list, details.
