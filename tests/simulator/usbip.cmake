zel_test(usbip_tests
    SOURCES usbip_host.cpp usbip_stream_test.cpp usbip_test.cpp
    LINKS simulator_usbip simulator_usbip_picture GTest::gmock
    MAIN_LIBRARY qt_test_main)
