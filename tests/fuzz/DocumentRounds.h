#pragma once

#include "tests/fuzz/Expected.h"
#include "tests/fuzz/Random.h"
#include "tests/fuzz/Tree.h"
#include "tests/fuzz/Watchdog.h"
#include "tests/support/Describe.h"
#include "tests/support/Fixture.h"

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace component_fuzz {

/// A document on its way into the component.
struct Input {
    enum class Kind { Definition, Catalogue, Stream, Project, Saved };
    static constexpr std::array<const wchar_t*, 5> kNames = {L"definition", L"catalogue", L"stream",
                                                             L"project", L"saved"};

    Kind kind = Kind::Definition;
    /// What a file holds, or a member is given as a text.
    std::string bytes;
    std::wstring text;
    /// Made by a DOM's own members where the text is no XML, or no text is asked for.
    std::optional<Tree> tree;
    bool isBuilt = false;
};

/// Hands documents to a module, good ones and others, and looks at what it
/// makes of them.
class DocumentsFuzzTest : public support::ComponentTest {
  protected:
    void SetUp() override;
    void TearDown() override;

    /// A changed document of the round.
    Input Changed(Random& random) const;
    /// A document of the corpus as it stands.
    static Input FromFile(const std::wstring& name);
    /// The names of the corpus but for the good documents.
    static std::vector<std::wstring> Corpus();
    /// Hands it over, checks what comes of it, and that good documents are
    /// then read as ever.
    void Check(const Input& input);
    Watchdog& Dog() { return *watchdog_; }
    /// How many documents of each kind came to what.
    const std::map<std::string, unsigned>& Tally() const noexcept { return tally_; }

    const std::wstring& GoodText(Input::Kind kind) const {
        return goodTexts_.at(static_cast<std::size_t>(kind));
    }
    const support::Document& GoodCatalogue() const noexcept { return goodCatalogue_; }
    /// The boxes since the last call; each is one that the component may show.
    std::vector<bench::Box> KnownBoxes();

  private:
    void CheckDefinition(const Input& input);
    void CheckCatalogue(const Input& input);
    void CheckStream(const Input& input);
    void CheckProject(const Input& input);
    void CheckSaved(const Input& input);
    /// The element that a host hands over; empty when the DOM takes none.
    com::Ref<IXMLDOMElement> ProjectOf(const support::Document& document, const Input& input) const;
    com::Ref<IXMLDOMElement> ElementOf(const support::Document& document, const Input& input) const;
    /// Saves, exports and describes a module, whatever state it is in.
    void Use(const com::Ref<IAppObject>& module);
    /// All that a module says of itself and writes after good documents.
    std::wstring Answer();
    com::Ref<IAppObject> GoodModule();
    std::size_t Reports();
    void Count(const std::string& what) { ++tally_[what]; }

    std::wstring secret_;
    std::array<std::wstring, Input::kNames.size()> goodTexts_;
    /// What is changed: for each kind the good document and those of the
    /// corpus that are XML.
    std::array<std::vector<Tree>, Input::kNames.size()> seeds_;
    support::Document goodCatalogue_;
    std::optional<support::TypeLibrary> library_;
    std::optional<support::TextFile> secretFile_;
    std::optional<Watchdog> watchdog_;
    std::wstring answer_;
    std::map<std::string, unsigned> tally_;
};

/// Where the documents of the corpus lie, with a closing backslash.
const std::wstring& CorpusFolder();
std::string ReadFile(const std::wstring& path);
std::wstring FromUtf8(const std::string& bytes);

} // namespace component_fuzz
