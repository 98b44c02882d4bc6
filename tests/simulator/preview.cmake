zel_test(preview_tests
    SOURCES preview_test.cpp
    LINKS simulator_preview Qt6::Svg
    MAIN_LIBRARY qt_test_main)
target_sources(preview_tests PRIVATE "${PROJECT_SOURCE_DIR}/assets/assets.qrc"
               "${PROJECT_SOURCE_DIR}/assets/app_icon.qrc")
