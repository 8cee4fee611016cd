' Drives the component from VBScript, late-bound, as a script in a host would.
'
'   cscript //nologo client.vbs CATALOGUE STREAM PROJECT RESULT
'
' Reads the first two files; writes the saved module to PROJECT and what it saw
' to RESULT (Unicode text). The last line of RESULT is "All right." only when
' every check held: an error ends a script without one.
Option Explicit

Dim files, result, failures
Set files = CreateObject("Scripting.FileSystemObject")
Set result = files.CreateTextFile(WScript.Arguments(3), True, True)
failures = 0

Sub Say(text)
    result.WriteLine text
End Sub

Sub Check(isRight, what)
    If Not isRight Then
        failures = failures + 1
        Say "WRONG: " & what
    End If
End Sub

' MSXML asks for its site, so it is WScript that has to create it.
Function NewDocument()
    Dim document
    Set document = WScript.CreateObject("MSXML2.DOMDocument.6.0")
    document.async = False
    Set NewDocument = document
End Function

' Paths go by value, in parentheses: the MSXML of Wine takes no reference.
Function LoadDocument(path)
    Dim document
    Set document = NewDocument()
    Check document.load((path)), path & " is no XML document"
    Set LoadDocument = document
End Function

' Walks a collection with For Each and reaches every point by name as well.
Sub Walk(title, points)
    Dim point, seen
    seen = 0
    For Each point In points
        seen = seen + 1
        Say title & " " & seen & ": " & point.Name
        Check points.Item(point.Name).Name = point.Name, "Item of " & point.Name
        Check points.Item(CStr(seen)).Name = point.Name, "Item at position " & seen
        Check point.GlobalKey = points.GlobalKey & "\" & point.Name, "key of " & point.Name
    Next
    Check seen = points.Count, "For Each saw " & seen & " of " & points.Count
    Check points.Item("no such point") Is Nothing, "Item of a point that is not there"
End Sub

' The host's part: the object, its definition, the catalogue, a project.
Dim module, project
Set module = CreateObject("O_Tam_id.CDBAppObject")
Check module.Init("O_Tam_id"), "Init"
Set module.XmlSNVTDoc = LoadDocument(WScript.Arguments(0))
Set project = CreateObject("OrvHost.Project")
Set module.Parent = project

module.LoadFromXmlStream LoadDocument(WScript.Arguments(1)).xml
module.GlobalKey = "SHEET1\MODULE1"
module.ExtendedKey = "PROJECT\SHEET1\MODULE1"
Say "Module: " & module.UserName & ", " & module.ProgrammaticID

Walk "Input", module.Inputs
Walk "Output", module.Outputs
Walk "Attribute", module.Attributes

' The first attribute with a number and a unit gets another value.
Dim attribute, changed
Set changed = Nothing
For Each attribute In module.Attributes
    If changed Is Nothing And attribute.SNVTType.GenType = "SignedNumeric" Then
        Set changed = attribute
    End If
Next
If Not changed Is Nothing Then
    Say changed.Name & " was " & changed.Value & ", shown as " & changed.DispValue
    changed.Value = "1.5"
    Check module.Attributes.Item(changed.Name).Value = "1.5", "value of " & changed.Name
    Say changed.Name & " is " & changed.Value & ", shown as " & changed.DispValue
End If

' Saved into a project document and loaded again.
Dim document, root
Set document = NewDocument()
Set root = document.createElement("Project")
document.appendChild root
module.UserName = "Saved by a script"
module.DeviceKey = "K7"
module.XPosition = 3
module.XMLSave root, document
document.save (WScript.Arguments(2))

module.UserName = "Something else"
module.DeviceKey = ""
module.XPosition = 0
module.XmlLoad LoadDocument(WScript.Arguments(2)).documentElement.firstChild
Check module.UserName = "Saved by a script", "user name out of the project"
Check module.DeviceKey = "K7", "device key out of the project"
Check module.XPosition = 3, "position out of the project"

' Exported for the controller.
Dim image
image = module.Stream
Say "Image: " & Len(image) & " characters, sizes " & module.CDBDimension & " and " & module.DDBDimension
Check Left(image, 8) = "4F54494D", "the image's first bytes"
Check module.CDBDimension > 0, "size of the configuration"

' A host lets go of everything, and the object of its own points.
Set attribute = Nothing
Set changed = Nothing
module.Destroy
Set module = Nothing
Set project = Nothing

If failures = 0 Then
    Say "All right."
Else
    Say failures & " checks failed."
End If
result.Close
