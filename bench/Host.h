#pragma once

#include "bench/Answer.h"
#include "bench/BoxWatcher.h"
#include "bench/CommandLine.h"
#include "bench/QuickBoxes.h"
#include "bench/Xml.h"
#include "com/Ref.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>
#include <OrvHost.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/// COM for the life of a run.
class Apartment {
  public:
    Apartment();
    ~Apartment();
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
};

/// A manifest among this program's resources whose classes can be created
/// while this lives, nothing being registered. To be kept for a single call:
/// Wine draws the identifiers that stand for ProgIDs again for each manifest,
/// and those of this one may equal those of the program's own.
class LentClasses {
  public:
    explicit LentClasses(int manifestResource);
    ~LentClasses();
    LentClasses(const LentClasses&) = delete;
    LentClasses& operator=(const LentClasses&) = delete;

  private:
    HANDLE context_ = INVALID_HANDLE_VALUE;
    ULONG_PTR cookie_ = 0;
};

/// How an input was wired to what its reference names.
struct Wire {
    std::string input;
    std::string reference;
    /// "wired", "left open" or "refused"
    std::string result;
    std::string reason;
};

/// The host: owns one module object and does with it, step by step, what a
/// programming tool does. Boxes of a step are reported under its name.
class Host {
  public:
    /// Makes the object and gives it its definition, the catalogue and a project.
    Host(const Options& options, Answer& answer);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    IAppObject& App() const noexcept { return *app_.Get(); }
    ITamObject& Tam() const noexcept { return *tam_.Get(); }
    const xml::Node& Catalogue() const noexcept { return catalogue_; }
    /// A text of a type in the catalogue; empty where there is no such type or text.
    std::wstring CatalogueText(const std::wstring& typeId, const wchar_t* child) const;
    const xml::Document& CatalogueDocument() const noexcept { return catalogueDocument_; }
    const std::wstring& CatalogueFile() const noexcept { return catalogueFile_; }
    /// The key of the device, as the stream gives it.
    const std::wstring& DeviceKey() const noexcept { return deviceKey_; }
    /// The stream that was loaded last.
    const std::wstring& StreamText() const noexcept { return streamText_; }
    const std::vector<Wire>& Wires() const noexcept { return wires_; }

    /// Loads the stream that the options name, gives keys and enumeration
    /// texts, and wires the inputs if that is asked for.
    void LoadStream();
    /// The same with a stream of this file, which the answer tells by this name.
    void LoadStreamFile(const std::wstring& name, const std::wstring& file);
    void LoadStreamText(const std::wstring& text);

    /// What the host did last, for messages about failures.
    static const std::string& CurrentStep() noexcept { return step_; }

    /// A step may have steps of its own; where one fails, that is the current one.
    template <class F>
    void Step(const std::string& name, F&& f) {
        std::string outer = std::exchange(step_, name);
        f();
        step_ = std::move(outer);
    }

    /// A message box with this text is what the command line asked for and no fault.
    void ExpectBox(std::wstring text) { expectedBox_ = std::move(text); }

    /// From here on boxes are shown to the user, who answers them.
    void LeaveBoxesToUser() noexcept {
        watcher_.SetMode(BoxWatcher::Mode::LeaveToUser);
        quickBoxes_.reset();
    }

    /// Runs what is no part of the command: its boxes are answered, and nobody is told of them.
    template <class F>
    void Unseen(F&& f) {
        const Unreported guard(isUnseen_);
        f();
    }

    /// Runs a step that shows a dialog: keys are typed into it, or it is
    /// answered with OK when there are none, or left to the user. Says in the
    /// answer what was left over; throws BenchError when something was.
    void DialogStep(const std::string& name, const std::function<void()>& f);

  private:
    class Unreported {
      public:
        explicit Unreported(bool& isUnseen) : isUnseen_(isUnseen), outer_(std::exchange(isUnseen, true)) {}
        ~Unreported() { isUnseen_ = outer_; }
        Unreported(const Unreported&) = delete;
        Unreported& operator=(const Unreported&) = delete;

      private:
        bool& isUnseen_;
        bool outer_;
    };

    bool AnswerBox(HWND window, const Box& box);
    void TellQuickBox(const Box& box);
    void MakeObject();
    void SetKeys();
    void GiveEnumTexts();
    void WireInputs();
    Wire WireInput(IInput& input, const std::wstring& reference);

    // Asked for when an error has ended the host.
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
    static std::string step_;

    const Options& options_;
    Answer& answer_;
    BoxWatcher watcher_;
    std::optional<QuickBoxes> quickBoxes_;
    std::wstring catalogueFile_;
    std::wstring streamText_;
    xml::Document catalogueDocument_;
    xml::Node catalogue_;
    xml::ElementIndex types_;
    com::Ref<IAppObject> app_;
    com::Ref<ITamObject> tam_;
    com::Ref<IDispatch> project_;
    bool isTyping_ = false;
    bool isUnseen_ = false;
    std::wstring expectedBox_;
    std::wstring deviceKey_;
    std::vector<Wire> wires_;
};

/// The DLLs of the family that still have live objects.
std::vector<std::string> DllsWithObjects();

} // namespace bench
