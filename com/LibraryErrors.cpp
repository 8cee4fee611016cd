#include <cstddef>
#include <exception>
#include <new>
#include <string>

// What the C++ library throws when a text or a container is asked for what it cannot
// do. Its own versions of these functions stand in one file with all its exceptions, and
// these bring both of its classes for narrow texts, with every member: a twelfth of a
// DLL that uses none of them. Each DLL is linked with this file (cmake/Shipped.cmake);
// programs keep the library's own. No caller tells the errors apart: a boundary answers
// E_OUTOFMEMORY for the first two and E_UNEXPECTED for the others.

namespace {

class LibraryError final : public std::exception {
  public:
    /// `text` is one of the library's constants.
    explicit LibraryError(const char* text) noexcept : text_(text) {}
    const char* what() const noexcept override { return text_; }

  private:
    const char* text_;
};

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier, readability-identifier-naming): the library's names
// NOLINTBEGIN(cert-dcl58-cpp, cert-dcl50-cpp): they stand in for the library's own
namespace std {

// The library declares them with the older spelling of the attribute, and clang wants the same.
__attribute__((__noreturn__)) void __throw_bad_alloc() {
    throw std::bad_alloc();
}
__attribute__((__noreturn__)) void __throw_bad_array_new_length() {
    throw std::bad_array_new_length();
}
__attribute__((__noreturn__)) void __throw_logic_error(const char* text) {
    throw LibraryError(text);
}
__attribute__((__noreturn__)) void __throw_length_error(const char* text) {
    throw LibraryError(text);
}
__attribute__((__noreturn__)) void __throw_out_of_range(const char* text) {
    throw LibraryError(text);
}
__attribute__((__noreturn__)) void __throw_out_of_range_fmt(const char* text, ...) {
    throw LibraryError(text);
}

} // namespace std
// NOLINTEND(cert-dcl58-cpp, cert-dcl50-cpp)

// From version 13 on a wide text replaces a part of itself by a function that the library
// has in one file with all others of wide texts.
#if __GNUC__ >= 13
template void std::wstring::_M_replace_cold(wchar_t*, std::size_t, const wchar_t*, std::size_t, std::size_t);
#endif
// NOLINTEND(bugprone-reserved-identifier, readability-identifier-naming)
