#include "tests/com/Subjects.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

using namespace contract;

namespace {

constexpr CLSID kNoClass = {0x5E0D3F10, 0x0001, 0x4E0A, {0x9E, 0x55, 0x31, 0x0B, 0x6A, 0x44, 0x90, 0x7F}};

/// The exports of both DLLs and their factories, over their classes.
class ServerTest : public ContractTest {
  protected:
    struct Server {
        const char* name;
        const TypeLibrary& library;
        std::function<HRESULT(REFCLSID, REFIID, void**)> classObject;
        std::function<HRESULT()> canUnload;
    };
    std::vector<Server> Servers() {
        return {
            {"component", Own(),
             [this](REFCLSID clsid, REFIID iid, void** out) { return Dll().ClassObject(clsid, iid, out); },
             [this] { return Dll().CanUnload(); }},
            {"host services", Services(),
             [this](REFCLSID clsid, REFIID iid, void** out) { return Host().ClassObject(clsid, iid, out); },
             [this] { return Host().CanUnload(); }}};
    }
    /// Every class that can be made, with its factory.
    using Body = std::function<void(const Server& server, const Class& entry, IClassFactory& factory)>;
    void ForEachFactory(const Body& body) {
        std::size_t count = 0;
        for (const Server& server : Servers()) {
            for (const Class& entry : server.library.Classes()) {
                if (!entry.creatable) {
                    continue;
                }
                SCOPED_TRACE(server.name + (": " + Narrow(entry.name)));
                com::Ref<IClassFactory> factory;
                ASSERT_EQ(server.classObject(entry.id, IID_IClassFactory, factory.PutVoid()), S_OK);
                body(server, entry, *factory.Get());
                ++count;
            }
        }
        EXPECT_EQ(count, 10u) << "two classes of the component, eight of the host services";
    }
};

TEST_F(ServerTest, MakesTheCreatableClassesAndNoOther) {
    for (const Server& server : Servers()) {
        for (const Class& entry : server.library.Classes()) {
            SCOPED_TRACE(server.name + (": " + Narrow(entry.name)));
            void* out = &out;
            EXPECT_EQ(server.classObject(entry.id, IID_IClassFactory, &out),
                      entry.creatable ? S_OK : CLASS_E_CLASSNOTAVAILABLE);
            EXPECT_EQ(out != nullptr, entry.creatable);
            if (entry.creatable) {
                static_cast<IClassFactory*>(out)->Release();
            }
        }
        void* out = &out;
        EXPECT_EQ(server.classObject(kNoClass, IID_IClassFactory, &out), CLASS_E_CLASSNOTAVAILABLE);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(server.classObject(server.library.Classes().front().id, IID_IClassFactory, nullptr),
                  E_POINTER);
        EXPECT_EQ(server.classObject(kNoClass, IID_IClassFactory, nullptr), E_POINTER);
    }
}

TEST_F(ServerTest, HasFactoriesOfOneInterface) {
    ForEachFactory([](const Server& server, const Class& entry, IClassFactory& factory) {
        const auto identity = com::Query<IUnknown>(&factory);
        EXPECT_TRUE(com::SameObject(identity.Get(), com::Query<IClassFactory>(identity.Get()).Get()));
        for (const IID& iid : {IID_IDispatch, IID_IMarshal, entry.interfaces.front().id, IID_NULL}) {
            void* out = &out;
            EXPECT_EQ(factory.QueryInterface(iid, &out), E_NOINTERFACE);
            EXPECT_EQ(out, nullptr);
            out = &out;
            EXPECT_EQ(server.classObject(entry.id, iid, &out), E_NOINTERFACE);
            EXPECT_EQ(out, nullptr);
        }
        EXPECT_EQ(factory.QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    });
}

TEST_F(ServerTest, MakesAnObjectThroughEachOfItsInterfaces) {
    ForEachFactory([](const Server&, const Class& entry, IClassFactory& factory) {
        std::vector<IID> iids{IID_IUnknown, IID_IDispatch};
        for (const Interface& face : entry.interfaces) {
            iids.push_back(face.id);
        }
        for (const IID& iid : iids) {
            com::Ref<IUnknown> object;
            EXPECT_EQ(factory.CreateInstance(nullptr, iid, object.PutVoid()), S_OK) << Narrow(TextOf(iid));
            EXPECT_TRUE(object);
        }
    });
}

TEST_F(ServerTest, RefusesAggregation) {
    const auto outer = HostContext();
    ForEachFactory([&](const Server&, const Class& entry, IClassFactory& factory) {
        for (const IID& iid : {IID_IUnknown, entry.interfaces.front().id}) {
            void* out = &out;
            EXPECT_EQ(factory.CreateInstance(outer.Get(), iid, &out), CLASS_E_NOAGGREGATION);
            EXPECT_EQ(out, nullptr);
        }
    });
}

TEST_F(ServerTest, RefusesAnInterfaceThatTheObjectLacks) {
    ForEachFactory([](const Server& server, const Class&, IClassFactory& factory) {
        void* out = &out;
        EXPECT_EQ(factory.CreateInstance(nullptr, IID_IClassFactory, &out), E_NOINTERFACE);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(factory.CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
        EXPECT_EQ(server.canUnload(), S_FALSE) << "the factory itself lives";
    });
    for (const Server& server : Servers()) {
        EXPECT_EQ(server.canUnload(), S_OK) << server.name;
    }
}

TEST_F(ServerTest, StaysLoadedWhileAFactoryIsLocked) {
    for (const Server& server : Servers()) {
        SCOPED_TRACE(server.name);
        for (const Class& entry : server.library.Classes()) {
            if (!entry.creatable) {
                continue;
            }
            com::Ref<IClassFactory> factory;
            ASSERT_EQ(server.classObject(entry.id, IID_IClassFactory, factory.PutVoid()), S_OK);
            EXPECT_EQ(factory->LockServer(TRUE), S_OK);
            EXPECT_EQ(factory->LockServer(TRUE), S_OK);
            factory.Reset();
            EXPECT_EQ(server.canUnload(), S_FALSE) << "locked twice";
            // A lock is the server's: another factory takes it away.
            ASSERT_EQ(server.classObject(entry.id, IID_IClassFactory, factory.PutVoid()), S_OK);
            EXPECT_EQ(factory->LockServer(FALSE), S_OK);
            com::Ref<IClassFactory> kept;
            std::swap(kept, factory);
            EXPECT_EQ(server.canUnload(), S_FALSE) << "locked once more than unlocked";
            EXPECT_EQ(kept->LockServer(FALSE), S_OK);
            kept.Reset();
            EXPECT_EQ(server.canUnload(), S_OK);
        }
    }
}

TEST_F(ServerTest, AnUnlockTooManyIsRefusedAndTakesNoLaterLockAway) {
    for (const Server& server : Servers()) {
        SCOPED_TRACE(server.name);
        const auto& classes = server.library.Classes();
        const auto entry =
            std::find_if(classes.begin(), classes.end(), [](const Class& c) { return c.creatable; });
        ASSERT_NE(entry, classes.end());
        com::Ref<IClassFactory> factory;
        ASSERT_EQ(server.classObject(entry->id, IID_IClassFactory, factory.PutVoid()), S_OK);
        EXPECT_EQ(factory->LockServer(FALSE), E_UNEXPECTED);
        EXPECT_EQ(factory->LockServer(TRUE), S_OK);
        factory.Reset();
        EXPECT_EQ(server.canUnload(), S_FALSE) << "the lock counts";
        ASSERT_EQ(server.classObject(entry->id, IID_IClassFactory, factory.PutVoid()), S_OK);
        EXPECT_EQ(factory->LockServer(FALSE), S_OK);
        EXPECT_EQ(factory->LockServer(FALSE), E_UNEXPECTED);
        factory.Reset();
        EXPECT_EQ(server.canUnload(), S_OK);
    }
}

TEST_F(ServerTest, StaysLoadedWhileOneObjectOfAnyClassLives) {
    for (const Family family : kFamilies) {
        const bool ofHost = family == Family::Host || family == Family::Generic;
        const std::size_t count = Subjects(family).size();
        EXPECT_EQ(Dll().CanUnload(), S_OK);
        EXPECT_EQ(Host().CanUnload(), S_OK);
        for (std::size_t i = 0; i < count; ++i) {
            Subject last = Subjects(family)[i]; // all the others end here
            SCOPED_TRACE(last.name);
            EXPECT_EQ(ofHost ? Host().CanUnload() : Dll().CanUnload(), S_FALSE);
            last.object.Reset();
            EXPECT_EQ(Dll().CanUnload(), S_OK);
            EXPECT_EQ(Host().CanUnload(), S_OK);
        }
    }
}

TEST_F(ServerTest, ReachesAnObjectOfEveryClass) {
    std::vector<CLSID> reached;
    for (const Subject& subject : Scriptables()) {
        reached.push_back(*subject.classId);
    }
    for (const Server& server : Servers()) {
        for (const Class& entry : server.library.Classes()) {
            EXPECT_NE(std::find(reached.begin(), reached.end(), entry.id), reached.end())
                << server.name << ": " << Narrow(entry.name) << " is not tested by this suite";
        }
    }
}

} // namespace
