// The main of the programs that run inside the guest. They choose between libusb and the kernel's driver as
// the product does.
#include <gtest/gtest.h>

#include "kernel/product_registry.h"

int main(int argc, char **argv) {
    ::testing::InitGoogleTest(&argc, argv);
    guest::useProductRegistry();
    return RUN_ALL_TESTS();
}
