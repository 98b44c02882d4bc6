// The main of the programs that run inside the guest: the product's own choice between libusb and the
// kernel's driver.
#include <gtest/gtest.h>

#include "kernel/product_registry.h"

int main(int argc, char **argv) {
    ::testing::InitGoogleTest(&argc, argv);
    guest::useProductRegistry();
    return RUN_ALL_TESTS();
}
