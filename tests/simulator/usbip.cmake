zel_test(usbip_tests SOURCES usbip_test.cpp LINKS simulator_usbip GTest::gmock)
