#pragma once

#include "tests/fault/Injection.h"
#include "tests/support/ImportPatch.h"

#include <cstring>
#include <map>
#include <string>

namespace fault {

/// Replaces methods in the tables of objects, for all objects of the class, by
/// calls that an Injection can make fail. Only calls that come from one DLL
/// count. Undone at the end.
class Slots {
  public:
    explicit Slots(HMODULE caller);
    ~Slots();
    Slots(const Slots&) = delete;
    Slots& operator=(const Slots&) = delete;

    /// Replaces methods of the class of an object. The same method may be
    /// given again for another object of the class.
    template <Kind K, auto... Methods, class I>
    void Replace(I* object) {
        (ReplaceOne<K, Methods>(object), ...);
    }

    /// The methods that were ever replaced and the calls of each, over the program.
    static std::map<std::string, const long*>& Counts();

  private:
    using Table = ULONG_PTR*;

    /// Where a method stands in a table: what this compiler's pointer to a
    /// virtual member holds, plus one.
    template <class Method>
    static std::size_t IndexOf(Method method) {
        ULONG_PTR word = 0;
        std::memcpy(&word, &method, sizeof(word));
        return (word - 1) / sizeof(void*);
    }

    template <Kind K, auto Method>
    struct Hook;
    template <Kind K, class I, class... Arguments, HRESULT (STDMETHODCALLTYPE I::*Method)(Arguments...)>
    struct Hook<K, Method> {
        /// Calls of the DLL so far.
        static inline long calls = 0;
        static HRESULT STDMETHODCALLTYPE Call(I* object, Arguments... arguments) {
            if (IsFromCaller(__builtin_return_address(0))) {
                ++calls;
                if (Fails(K)) {
                    return CodeOf(K);
                }
            }
            using Function = HRESULT(STDMETHODCALLTYPE*)(I*, Arguments...);
            const auto original =
                reinterpret_cast<Function>(Original(*reinterpret_cast<Table*>(object), IndexOf(Method)));
            return original(object, arguments...);
        }
    };

    /// What the compiler calls a method, such as "&IXMLDOMNode::get_text".
    template <auto Method>
    static std::string NameOf() {
        const std::string function = __PRETTY_FUNCTION__;
        const std::size_t begin = function.find('&', function.find("Method = "));
        return function.substr(begin, function.find_first_of(";]", begin) - begin);
    }

    template <Kind K, auto Method, class I>
    void ReplaceOne(I* object) {
        Counts()[NameOf<Method>()] = &Hook<K, Method>::calls;
        const auto hook = reinterpret_cast<ULONG_PTR>(&Hook<K, Method>::Call);
        ReplaceSlot(*reinterpret_cast<Table*>(object), IndexOf(Method), hook);
    }

    static bool IsFromCaller(const void* address) noexcept;
    static ULONG_PTR Original(Table table, std::size_t index);
    void ReplaceSlot(Table table, std::size_t index, ULONG_PTR hook);

    ULONG_PTR callerBegin_ = 0;
    ULONG_PTR callerEnd_ = 0;
    /// What stood in each place.
    std::map<Table, ULONG_PTR> originals_;
};

} // namespace fault
