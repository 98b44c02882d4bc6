zel_test(preview_tests
    SOURCES preview_test.cpp
    LINKS simulator_preview simulator_usbip_picture
    MAIN_LIBRARY qt_test_main)
