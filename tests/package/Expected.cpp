#include "tests/package/Expected.h"

#include <cstddef>

namespace package {

namespace {

const Library& Faces() {
    static const Library library{"{23539202-4C9D-4BB1-86C0-E65E8B10D209}",
                                 "OrvDBFaces 1.0: host interfaces of application objects",
                                 {{"{BDE0382A-8EA9-4328-9A23-166E2A54713D}", "IAppObject"},
                                  {"{3AD171CC-1D26-49C1-B3B8-467A97F1DD17}", "ITamObject"},
                                  {"{F4019C77-6B2E-42EC-B848-2CFC06820C91}", "IInputs"},
                                  {"{DB386F27-F658-450F-BE95-D820D0C0C2AF}", "IInput"},
                                  {"{ADE2535A-328B-43F4-AAA3-4284D3A065F2}", "IOutputs"},
                                  {"{BC910A29-E85B-4AAD-8215-4CE9D580C4F2}", "IOutput"},
                                  {"{901F0EAE-483F-4830-B0AB-F6D719BEC777}", "IAttributes"},
                                  {"{7128C881-EBAC-46E6-9AAF-B27CF4EE8B03}", "IAttribute"},
                                  {"{9A4E2EAB-B540-47FE-9C11-66E74C35D5C6}", "IMutableTypeAttribute"},
                                  {"{CFF80912-481B-482F-8D63-33EC1B501D30}", "ISubItemConnable"},
                                  {"{DB8BDFE8-170D-4DA5-B949-8EE626EA5B0E}", "IDisplayItem"},
                                  {"{EBDF7963-C5D4-46DC-8BCC-7A4677B7AA50}", "ISNVType"},
                                  {"{7A239805-98C6-466E-BE53-DFD73AAE458F}", "IEnumType"},
                                  {"{A722694B-6A53-458E-9170-EA3B707FEFAA}", "ICompatibleSNVTs"},
                                  {"{9564B43E-E2CD-4131-9FFA-3AFE338A3E92}", "ICompatibleSNVT"},
                                  {"{8EB41C1E-7409-46BF-A01D-AF9AA6C6CE33}", "IClonable"},
                                  {"{9F0B7A11-E437-4BB0-8B1D-F4A1A76A09EB}", "ITamInternalAppObject"},
                                  {"{EEC8D5B4-D46B-4C15-8C33-D015D2EF3DED}", "IAttributeInterceptor"},
                                  {"{38BFDE91-E19B-4B7C-8741-EB8C3C93D5E9}", "ITamObjectManager"},
                                  {"{7A5A9408-FFF2-4EEC-984B-2330C38792C2}", "IUnitConverter"},
                                  {"{5285ED50-D970-43CC-B0EC-E57FCF3447C2}", "IDatabaseLocation"},
                                  {"{2690F178-80A7-47BE-ADCE-5BB1062776FF}", "IHostDocument"},
                                  {"{999A42D2-A854-4E5A-B5E6-95BFB89CC88E}", "IHostView"},
                                  {"{4EA6F823-F4C3-477A-B4C9-0EAC91D63066}", "IMacroConnections"},
                                  {"{436AF378-A3F7-424F-927A-C812F9F26EDE}", "IMacroConnectionGroups"},
                                  {"{DB06B19F-2E1A-4138-8C4B-34C22C229C90}", "IMacroConnectionGroup"},
                                  {"{23F65A62-CA30-49A8-BF0B-311EE490C207}", "IMacroConnectedItems"},
                                  {"{2A0045F6-07AA-4A50-A592-85C43C006279}", "IMacroConnectedItem"},
                                  {"{BF1732F1-EAEC-45A4-BCA4-6509F658E9F9}", "IDeviceContext"},
                                  {"{F0412500-BAA5-4839-9E77-9C3CCBEEB38E}", "IDevice"},
                                  {"{403FD851-2708-483B-A326-E73C3A595139}", "IChannel"},
                                  {"{E292DCD9-24F4-4014-99EA-4736BFBDC76E}", "ILibraryService"},
                                  {"{217867E7-A9F5-4C0C-B0A4-02674042858F}", "ILibrary"},
                                  {"{7F22F179-DE2E-4B70-A20B-69F5F6DF7038}", "IAttributeInterception"},
                                  {"{386E8FD6-4857-4BBC-97EB-1F773D201FCB}", "IVisibleItem"}}};
    return library;
}

std::string Utf8(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    std::string bytes(text.size() * 3, '\0');
    bytes.resize(static_cast<std::size_t>(WideCharToMultiByte(
        CP_UTF8, 0, text.data(), length, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
}

/// Adds a key with the keys above it, and a text value of it.
void Add(Lines& lines, const std::string& path, const std::string& value, const std::string& text) {
    for (auto end = path.find('\\'); end != std::string::npos; end = path.find('\\', end + 1)) {
        lines[path.substr(0, end)];
    }
    lines[path];
    lines[path + " : " + value] = "1 " + text;
}

void AddLibrary(Lines& lines, const std::string& prefix, const Library& library, const std::string& file,
                const std::string& place) {
    const std::string key = prefix + "TypeLib\\" + library.id + "\\1.0";
    Add(lines, key, "", library.help);
    Add(lines, key + (sizeof(void*) == 8 ? "\\0\\win64" : "\\0\\win32"), "", place);
    Add(lines, key + "\\FLAGS", "", "0");
    Add(lines, key + "\\HELPDIR", "", file.substr(0, file.find_last_of('\\') + 1));
    for (const Interface& entry : library.interfaces) {
        const std::string face = prefix + "Interface\\" + entry.id;
        Add(lines, face, "", entry.name);
        Add(lines, face + "\\ProxyStubClsid32", "", "{00020424-0000-0000-C000-000000000046}");
        Add(lines, face + "\\TypeLib", "", library.id);
        Add(lines, face + "\\TypeLib", "Version", "1.0");
    }
}

} // namespace

const DllFacts& Component() {
    static const DllFacts facts{
        L"O_Tam_id.dll",
        {{"{17C37AEC-B03B-4DB2-9F7D-EC0E31E7B3DD}", "O_Tam_id.CDBAppObject", "Remote I/O module object"},
         {"{46A878FC-BDB5-4C88-99CB-C68525CD151B}", "O_Tam_id.TamObjectManager",
          "Manager of channel objects"}},
        {"{D912E3A3-F582-410E-89B0-8DEFF4425AFA}",
         "O_Tam_id 1.0: remote I/O module objects",
         {{"{F6AC9466-B2A2-406B-91B2-78C4DBFF7562}", "ITamDialogs"},
          {"{5D170646-19B0-4B56-92ED-E511AFB0C401}", "_CDBAttribute"},
          {"{B6FBB5FE-989F-4868-8B5E-9EEED1282E6A}", "_CDBAttributes"},
          {"{0D9251AC-84AD-472C-80C4-762321BCF125}", "_CDBInput"},
          {"{247DCF2A-CC74-4ADC-80CB-6DAF48DCF75F}", "_CDBInputs"},
          {"{06B651DD-FDED-44B6-9F84-8678B04C8AB2}", "_CDBOutput"},
          {"{3EA9F8B9-E787-4C78-BAEB-2E17E8A8913A}", "_CDBOutputs"}}},
        {"ADVAPI32.dll", "GDI32.dll", "KERNEL32.dll", "OLEAUT32.dll", "SHELL32.dll", "SHLWAPI.dll",
         "USER32.dll", "VERSION.dll", "msvcrt.dll", "ole32.dll"},
        L"Application objects of remote I/O modules"};
    return facts;
}

const DllFacts& HostServices() {
    static const DllFacts facts{
        L"OrvHost.dll",
        {{"{B9D8C385-B68C-42DD-9F97-3FA4AB215234}", "UnitManager.Converter", "Unit converter"},
         {"{1D816F43-BC81-46F7-B17D-EE81B559E78F}", "OrvHost.DatabaseLocation", "Database location"},
         {"{54506936-C79B-423B-81F3-1B38ECBAF967}", "ORV.QB.Interop.Compilers.CompilersInterop",
          "Database compiler"},
         {"{531B7FAE-4B4B-483B-9F6E-4216D9B72AB4}", "OrvHost.Project", "Project"},
         {"{0A4AF417-CF4F-482A-B568-CED0EAA7A4FA}", "O_Generic.CDBAppObject", "Generic block"},
         {"{2B1ED783-59AB-457D-B2AB-08D73EFFA47A}", "OrvHost.LibraryService", "Object library"},
         {"{89280CCE-E917-48F5-93F4-5FA649FF0B65}", "OrvHost.DeviceContext", "Device context"},
         {"{F12C0997-33A1-439E-A721-3B471486D6BB}", "OrvHost.Device", "Device"}},
        {"{03814B01-E40D-4C62-B843-0733B9AFEBC8}",
         "OrvHost 1.0: host services for application objects",
         {{"{F33CEA1C-3104-4050-9D19-C168E332AA45}", "IUnitSettings"},
          {"{EFF4A56D-FA1B-419D-A0B6-FF2B6EA277CC}", "ICompilersInterop"},
          {"{E6F72BD5-1EFB-4307-A96C-B7FCA9474F44}", "IProjectGroup"},
          {"{840B940E-B482-4875-A874-B2C9109C1D7C}", "IProject"},
          {"{4A35E933-2F80-4F34-B4BA-6C607C1918CC}", "IShowCounter"},
          {"{72B9AB55-4BC6-43ED-BA1A-8C62D22F328B}", "IGenericObject"},
          {"{0B987D17-F9CA-458E-A345-EF06B8AEAF8B}", "IGenericAttribute"},
          {"{6F4FC8F0-D911-4942-B2C6-308982E642AD}", "ILibraryFolder"},
          {"{13C9C79D-8E79-4F70-91F7-1EDE36E2F936}", "IDeviceContextSetup"},
          {"{70F69C77-94B2-46BA-945B-70B92EF704E5}", "IDeviceSetup"},
          {"{F5D0FF6F-E891-43EF-814B-017919A3E278}", "IChannelSetup"}}},
        {"ADVAPI32.dll", "KERNEL32.dll", "OLEAUT32.dll", "msvcrt.dll", "ole32.dll"},
        L"Host services for application objects"};
    return facts;
}

Lines Registration(const DllFacts& dll, Scope scope, const std::wstring& path, bool withFaces) {
    const std::string prefix = Prefix(scope);
    const std::string file = Utf8(path);
    Lines lines;
    for (const Class& entry : dll.classes) {
        const std::string key = prefix + "CLSID\\" + entry.id;
        Add(lines, key, "", entry.description);
        Add(lines, key + "\\InprocServer32", "", file);
        Add(lines, key + "\\InprocServer32", "ThreadingModel", "Apartment");
        Add(lines, key + "\\ProgID", "", entry.progId);
        Add(lines, key + "\\Programmable", "", "");
        Add(lines, key + "\\TypeLib", "", dll.library.id);
        Add(lines, key + "\\Version", "", "1.0");
        Add(lines, prefix + entry.progId, "", entry.description);
        Add(lines, prefix + entry.progId + "\\CLSID", "", entry.id);
    }
    AddLibrary(lines, prefix, dll.library, file, file);
    if (withFaces) {
        AddLibrary(lines, prefix, Faces(), file, file + "\\2");
    }
    return lines;
}

} // namespace package
