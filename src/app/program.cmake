# The program: one source file, everything else is in libraries.
add_executable(larkspan src/app/main.cpp)
target_link_libraries(larkspan PRIVATE larkspan_shell)
install(TARGETS larkspan RUNTIME DESTINATION bin)
