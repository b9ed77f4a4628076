# What the user sees of it: the history window.
larkspan_library(larkspan_tracking_ui
  SOURCES
    HistoryHost.h
    HistoryRows.cpp HistoryRows.h
    frmHistory.cpp frmHistory.h
  LINK larkspan_tracking_core larkspan_controls Qt6::Widgets)
