#include <windows.h>

#include <objbase.h>

#include <gtest/gtest.h>

#include <iostream>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
        std::cerr << "COM cannot be started\n";
        return 1;
    }
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
