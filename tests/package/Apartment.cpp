#include "tests/package/Apartment.h"

#include <gtest/gtest.h>

#include <thread>

namespace package {

void InAnotherApartment(IUnknown* object, REFIID iid,
                        const std::function<void(const com::Ref<IUnknown>& there)>& act) {
    IStream* stream = nullptr;
    ASSERT_EQ(S_OK, CoMarshalInterThreadInterfaceInStream(iid, object, &stream));
    HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread worker([&] {
        EXPECT_EQ(S_OK, CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        com::Ref<IUnknown> there;
        EXPECT_EQ(S_OK, CoGetInterfaceAndReleaseStream(stream, iid, there.PutVoid()));
        if (there) {
            act(there);
        }
        there.Reset();
        CoUninitialize();
        SetEvent(done);
    });
    DWORD index = 0;
    EXPECT_EQ(S_OK, CoWaitForMultipleHandles(0, 60'000, 1, &done, &index));
    worker.join();
    CloseHandle(done);
}

} // namespace package
