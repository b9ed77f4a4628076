larkspan_test(test_tracking_ui GUI
  SOURCES
    HistoryActionsTest.cpp
    HistoryBench.h
    HistoryPassTest.cpp
    HistoryWaitingTest.cpp
    frmHistoryTest.cpp
  LINK larkspan_tracking_ui larkspan_test_office larkspan_test_engine)
