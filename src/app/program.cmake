# The program: one source file, everything else is in libraries.
add_executable(larkspan src/app/main.cpp)
target_link_libraries(larkspan PRIVATE larkspan_shell)
install(TARGETS larkspan RUNTIME DESTINATION bin)
install(FILES docs/man/larkspan.1 DESTINATION share/man/man1)
install(FILES packaging/larkspan.desktop DESTINATION share/applications)
install(FILES packaging/larkspan.metainfo.xml DESTINATION share/metainfo)
install(FILES packaging/larkspan.svg DESTINATION share/icons/hicolor/scalable/apps)
foreach(side 16 24 32 48 64 128 256)
  install(FILES packaging/larkspan-${side}.png
          DESTINATION share/icons/hicolor/${side}x${side}/apps
          RENAME larkspan.png)
endforeach()
install(FILES packaging/larkspan-symbolic.svg DESTINATION share/icons/hicolor/symbolic/apps)
