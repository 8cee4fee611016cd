#pragma once

#include "view/model/SourcePoints.h"
#include "view/Session.h"

#include "bench/Xml.h"
#include "check/Encoding.h"
#include "check/Findings.h"

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace view {

namespace xml = bench::xml;

/// What a file holds: its bytes, and of a project the text in UTF-8 with its modules.
struct FileText {
    Session::Kind kind = Session::Kind::Stream;
    std::string source = {};
    std::vector<ProjectModule> modules = {};
};
/// Throws BenchError for a project that holds no device stream.
FileText ReadFileText(const std::string& bytes, const std::wstring& file);

/// What only the documents tell of the points: the component keeps it to itself.
class Session::Documents {
  public:
    struct Words {
        std::wstring type;
        std::wstring address;
    };

    /// The stream in UTF-8, and the name of the module's definition.
    Documents(const std::string& stream, const std::wstring& definition);

    std::size_t Points() const noexcept { return places_.Places().size(); }
    /// Empty texts for a point that the stream does not have.
    const Words& Of(const PointId& id) const;
    /// The default value of an attribute; empty without one.
    std::wstring DefaultOf(const std::wstring& attribute) const;
    /// The points of this type of which the component tells when it does not find it, one
    /// after the other, from 0; null after the last.
    const SourcePoints::Place* PlaceOfType(const std::wstring& type, std::size_t number) const;
    /// The first point whose name stands in a text as a word.
    const SourcePoints::Place* PlaceNamedIn(const std::string& text) const;

  private:
    SourcePoints places_;
    std::map<PointId, Words> words_;
    std::unordered_map<std::wstring, std::wstring> defaults_;
    std::unordered_map<std::string, std::size_t> names_;
};

} // namespace view
