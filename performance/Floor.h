#pragma once

#include "tests/support/Read.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace benchmark {

// The work that no implementation of a job can avoid: parsing the same text
// and reading the same nodes once, or building and printing the same tree, and
// one message-loop yield per item where the contract asks for it. The nodes are
// read and made by the same few helpers that the component has for it; nothing
// is kept, checked, compared or converted.

/// `count` yields to the message loop.
void YieldTimes(long count);

/// Makes the object behind a ProgID, loads a definition file, reads the
/// children of its AppObject element and looks for the four kinds of data sheet.
void ReadDefinition(const wchar_t* converter, const std::wstring& path);

/// Parses a device stream and reads its header and each point's children. For
/// an output or an attribute one look-up in the catalogue and one reading of
/// the entry; each default value of the definition is read once.
void ReadStream(const std::wstring& stream, const support::Document& catalogue,
                const support::Document& definition, long points);

/// Builds the project element with one displayable output per name, and reads
/// its fields.
void BuildProject(const support::Document& document, const std::vector<std::wstring>& outputs);
/// Reads name and text of each child of the element's first child, a yield each.
void ReadFlags(const com::Ref<IXMLDOMElement>& element);
/// Builds the interoperability element of a stream with as many points.
void BuildInterop(const support::Document& document, const std::vector<std::wstring>& names);
/// Makes the two host objects, builds and prints the export document of a
/// stream with as many points, and makes the three calls that hand it over.
void BuildExport(const wchar_t* compilerProgId, REFCLSID locationClass,
                 const std::vector<std::wstring>& names, const std::wstring& reference);

/// Whoever asks for a key asks an object, through an interface.
struct Keyed {
    Keyed() = default;
    Keyed(const Keyed&) = delete;
    Keyed& operator=(const Keyed&) = delete;
    virtual ~Keyed() = default;
    virtual HRESULT STDMETHODCALLTYPE get_GlobalKey(BSTR* key) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ExtendedKey(BSTR* key) = 0;
};
/// The least that has keys: an object for each name, which joins its collection's key
/// and its name. A collection's key is a text for all of its objects, made before the
/// old one is let go: a key reaches all three collections or none.
class KeyedObjects {
  public:
    explicit KeyedObjects(const std::vector<std::wstring>& names);
    /// Gives the collections both keys.
    void Set(const std::wstring& key);
    /// Asks each object for both.
    void Read() const;

  private:
    struct CollectionKeys {
        std::wstring global;
        std::wstring extended;
    };
    class Object;

    std::array<CollectionKeys, 3> keys_;
    std::vector<std::unique_ptr<Keyed>> objects_;
};
/// Reads type and name of each child, a yield each.
void ReadNames(const com::Ref<IXMLDOMElement>& element);

} // namespace benchmark
