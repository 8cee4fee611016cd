#pragma once

#include "bench/BoxWatcher.h"
#include "tests/support/Component.h"
#include "tests/support/Errors.h"
#include "tests/support/HostDoubles.h"
#include "tests/support/Read.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace support {

/// The user's decimal mark, read from the system and not from the component.
std::wstring DecimalMark();
/// A number text with "." brought to the user's decimal mark.
std::wstring Local(std::wstring number);

/// A test with the component freshly loaded, a unit converter behind its
/// ProgID, and every box seen and answered. At its end no object of the
/// component may live, and no box may have gone unread.
class ComponentTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    Component& Dll() { return *component_; }
    Converter& Units() { return *converter_.Get(); }
    bench::BoxWatcher& Watcher() { return *watcher_; }

    /// A new module object; the test fails when it cannot be made.
    com::Ref<IAppObject> NewModule();
    /// A module object loaded from a device stream; the test fails when it does not load.
    com::Ref<IAppObject> Loaded(const std::wstring& stream);
    /// Hands over a catalogue document with this content of its document element.
    void SetCatalogue(const std::wstring& entries);
    /// Takes the boxes since the last call.
    std::vector<bench::Box> Boxes() { return watcher_->Take(); }

    // The host's database services, made when first asked for.
    Compiler& UseCompiler();
    DatabaseLocation& UseDatabaseLocation();

  private:
    com::Ref<Converter> converter_;
    std::optional<HostClass> converterClass_;
    com::Ref<Compiler> compiler_;
    std::optional<HostClass> compilerClass_;
    com::Ref<DatabaseLocation> location_;
    std::optional<HostClass> locationClass_;
    std::optional<Component> component_;
    std::optional<bench::BoxWatcher> watcher_;
};

/// A device stream with the sections given; each section text is the content
/// of its element.
std::wstring Stream(const std::wstring& inputs, const std::wstring& outputs = {},
                    const std::wstring& attributes = {}, const std::wstring& name = L"Module");

// Expectations on boxes, to be read by a person when they fail.

/// A message box with this text, caption and icon.
void ExpectBox(const bench::Box& box, const std::wstring& text, const std::wstring& caption, UINT icon = 0);
/// An error report with these texts; pass an empty description to leave it open.
void ExpectReport(const bench::Box& box, const std::wstring& description, const std::wstring& callingObject,
                  const std::wstring& callingFunction, const std::wstring& source = L"O_Tam_id");

} // namespace support
