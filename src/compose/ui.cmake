# The composing side of the main window: message, recipients, send buttons.
larkspan_library(larkspan_compose_ui
  SOURCES
    ComposeArea.cpp ComposeArea.h
    ComposeHost.h
    ComposeServices.h
    CounterLabel.cpp CounterLabel.h
    InputGate.cpp InputGate.h
    MessageBar.cpp MessageBar.h
    MessageEdit.cpp MessageEdit.h
    MessagePanel.cpp MessagePanel.h
    QuickfireRow.cpp QuickfireRow.h
    RecipientPanel.cpp RecipientPanel.h
    SendButton.cpp SendButton.h
    SendPanel.cpp SendPanel.h
    frmConfirmRecipient.cpp frmConfirmRecipient.h frmConfirmRecipient.ui
    frmGetTime.cpp frmGetTime.h frmGetTime.ui
  LINK larkspan_compose_core larkspan_contact_items larkspan_controls Qt6::Widgets)
