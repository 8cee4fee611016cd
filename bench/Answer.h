#pragma once

#include "bench/BoxWatcher.h"
#include "bench/Output.h"
#include "bench/Table.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bench {

/// Keeps the order in which members are added.
using Json = nlohmann::ordered_json;

/// What a run answers: one document for machines, and a text for people made
/// beside it. Only one of them is printed, at the end of the run.
class Answer {
  public:
    Answer(const std::string& command, const Screen& screen) : data{{"command", command}}, screen_(screen) {}

    Json data;

    void Heading(const std::string& text);
    /// A sentence; what is longer than the screen is wide goes on in the next line.
    void Line(const std::string& text);
    void Add(const Table& table) { text_ += table.Print(Width()); }
    void Add(const Fields& fields) { text_ += fields.Print(Width()); }
    /// A text of several lines as it stands.
    void Block(const std::string& text) { text_ += text; }
    /// A document to look at: lines that are wider than the screen are cut, and it is said
    /// where the whole one is.
    void Document(const std::string& text);

    /// Places in a line.
    std::size_t Width() const noexcept { return screen_.width; }
    std::string Painted(std::string_view text, Ink ink) const { return bench::Painted(text, ink, screen_); }

    /// A document that the run reads, under the name that the user knows it by.
    struct Source {
        std::string file;
        std::string bytes;
    };
    void AddSource(std::string file, std::string bytes) {
        sources_.push_back({std::move(file), std::move(bytes)});
    }
    /// One that the others stand on, as the catalogue: what explains a failure is looked for in
    /// the others first, in whichever order they were read.
    void AddGround(std::string file, std::string bytes) {
        ground_.push_back({std::move(file), std::move(bytes)});
    }
    std::vector<Source> Sources() const {
        std::vector<Source> sources = sources_;
        sources.insert(sources.end(), ground_.begin(), ground_.end());
        return sources;
    }
    void SetCatalogue(std::wstring file) { catalogue_ = std::move(file); }
    const std::wstring& Catalogue() const noexcept { return catalogue_; }

    /// What is wrong in a source ("file", "line", "column", "severity", "rule", "message",
    /// "expected", "suggestion"), with the numbers of the boxes that it explains ("boxes").
    void AddFinding(Json finding) { findings_.push_back(std::move(finding)); }
    const Json& Findings() const noexcept { return findings_; }

    /// A box that the component showed during a step of the host, what answers it
    /// ("bench", "keys" or "user"), and whether the command line asked for it.
    void AddBox(const std::string& step, const Box& box, const std::string& answeredBy, bool isExpected);
    const Json& Boxes() const noexcept { return boxes_; }
    /// The boxes, which are kept no longer: for a program that runs for days. A run of the
    /// bench keeps all of them: its document prints each one, and the text groups them.
    Json TakeBoxes() noexcept { return std::exchange(boxes_, Json::array()); }
    /// Those from this number on are not kept.
    void ForgetBoxes(std::size_t from);
    bool HasErrorReport() const noexcept { return errorReports_ > 0; }
    /// How many boxes report a fault: the error reports, and the message boxes
    /// that nobody asked for. The component has none that only informs.
    std::size_t Faults() const noexcept { return faults_; }

    /// The text, with the boxes at its end.
    std::string Text() const;
    const std::string& TextWithoutBoxes() const noexcept { return text_; }

  private:
    std::string BoxesText() const;
    std::string BoxText(std::size_t number, std::size_t times) const;
    /// The findings that explain a box, or those that explain none.
    std::string FindingsText(const Json& box, std::size_t indent) const;

    Screen screen_;
    std::string text_;
    Json boxes_ = Json::array();
    Json findings_ = Json::array();
    std::vector<Source> sources_;
    std::vector<Source> ground_;
    std::wstring catalogue_;
    std::size_t errorReports_ = 0;
    std::size_t faults_ = 0;
};

/// "hall.xml:3:7: error: what is there; what is expected [rule]"
std::string LineOf(const Json& finding);

/// The dialog in which the component shows what a member trapped.
bool IsErrorReport(const Box& box);

} // namespace bench
