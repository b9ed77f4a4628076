add_executable(compose_lock_holder LockHolder.cpp)
target_link_libraries(compose_lock_holder PRIVATE larkspan_flags SQLite::SQLite3)

larkspan_test(test_compose_ui GUI
  SOURCES
    ComposeBench.h
    ComposeLookTest.cpp
    ConfirmRecipientTest.cpp
    InputGateTest.cpp
    MessageBarTest.cpp
    MessageDisplayTest.cpp
    MessageEditTest.cpp
    RecipientListTest.cpp
    RepeatedPressTest.cpp
    ScheduleDialogTest.cpp
    SendTest.cpp
    TypingTest.cpp
  LINK larkspan_compose_ui larkspan_test_office)
target_compile_definitions(test_compose_ui PRIVATE LOCK_HOLDER="$<TARGET_FILE:compose_lock_holder>")
add_dependencies(test_compose_ui compose_lock_holder)
