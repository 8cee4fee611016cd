#pragma once

#include "bench/BoxWatcher.h"
#include "bench/Table.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <string>

namespace bench {

/// Keeps the order in which members are added.
using Json = nlohmann::ordered_json;

/// What a run says: one document for machines, and a text for people made
/// beside it. Only one of them is printed, at the end of the run.
class Report {
  public:
    explicit Report(const std::string& command) : data{{"command", command}} {}

    Json data;

    void Heading(const std::string& text) { text_ += (text_.empty() ? "" : "\n") + text + "\n"; }
    void Line(const std::string& text) { text_ += text + "\n"; }
    void Add(const Table& table) { text_ += table.Print(); }
    void Add(const Fields& fields) { text_ += fields.Print(); }
    /// A text of several lines as it stands.
    void Block(const std::string& text) { text_ += text; }

    /// A box that the component showed during a step of the host, what answers it
    /// ("bench", "keys" or "user"), and whether the command line asked for it.
    void AddBox(const std::string& step, const Box& box, const std::string& answeredBy, bool isExpected);
    const Json& Boxes() const noexcept { return boxes_; }
    bool HasErrorReport() const noexcept { return errorReports_ > 0; }
    /// How many boxes report a fault: the error reports, and the message boxes
    /// that nobody asked for. The component has none that only informs.
    std::size_t Faults() const noexcept { return faults_; }

    /// The text, with the boxes at its end.
    std::string Text() const;

  private:
    std::string BoxesText() const;

    std::string text_;
    Json boxes_ = Json::array();
    std::size_t errorReports_ = 0;
    std::size_t faults_ = 0;
};

/// The dialog in which the component shows what a member trapped.
bool IsErrorReport(const Box& box);

} // namespace bench
