' The benchmark's jobs as a user would write them in a script over the DOM,
' without the component. The host hands over the documents. Walks go from
' sibling to sibling: For Each over childNodes is slower.
Option Explicit

Class Point
    Public Name
    Public Address
    Public Permanent
    Public Visible
    Public SnvtId
    Public Value
    Public List
    Public DefaultValue
    Public GlobalKey
    Public ExtendedKey
    Public Displayable
    Public Reference
    Public TypeName
    Public GeneralType
    Public Unit
    Public Minimum
    Public Maximum
    Public Size
    Public A
    Public B
    Public C
    Public Factor
    Public Region
End Class

Dim catalogue, definition
Dim inputs, outputs, attributes, defaults
Dim moduleName, userName, devKey, isLast, objectId
Dim inputList

Sub UseCatalogue(document)
    Set catalogue = document.documentElement
End Sub

' Create and Init
Sub LoadDefinition(document, path)
    Dim child, id, description, category
    Set definition = document
    definition.load CStr(path)
    Set child = definition.getElementsByTagName("AppObject").Item(0).firstChild
    Do Until child Is Nothing
        Select Case UCase(child.baseName)
            Case "NAME": moduleName = child.text
            Case "ID": id = child.text
            Case "DESCRIPTION": description = child.text
            Case "CATEGORY": category = child.text
        End Select
        Set child = child.nextSibling
    Loop
    Set inputs = CreateObject("Scripting.Dictionary")
    Set outputs = CreateObject("Scripting.Dictionary")
    Set attributes = CreateObject("Scripting.Dictionary")
End Sub

Sub ReadDefaults()
    Dim node, found
    Set defaults = CreateObject("Scripting.Dictionary")
    Set found = definition.getElementsByTagName("DefaultValue")
    Set node = found.nextNode
    Do Until node Is Nothing
        If Not defaults.Exists(node.parentNode.baseName) Then defaults.Add node.parentNode.baseName, node.text
        Set node = found.nextNode
    Loop
End Sub

Sub ReadType(p)
    Dim entry, child
    Set entry = catalogue.selectSingleNode("SNVT_" & p.SnvtId)
    p.Factor = entry.getAttribute("Factor")
    p.Region = entry.getAttribute("Z3Region")
    Set child = entry.firstChild
    Do Until child Is Nothing
        Select Case UCase(child.baseName)
            Case "NAME": p.TypeName = child.text
            Case "TYPE": p.GeneralType = child.text
            Case "UNIT": p.Unit = child.text
            Case "MIN": p.Minimum = child.text
            Case "MAX": p.Maximum = child.text
            Case "LENGTH": p.Size = CLng(child.text)
            Case "A_COEF": p.A = CLng(child.text)
            Case "B_COEF": p.B = CLng(child.text)
            Case "C_COEF": p.C = CLng(child.text)
        End Select
        Set child = child.nextSibling
    Loop
End Sub

Function ReadPoint(element)
    Dim p, child
    Set p = New Point
    p.Name = element.baseName
    Set child = element.firstChild
    Do Until child Is Nothing
        Select Case UCase(child.baseName)
            Case "SNVTTYPE": p.SnvtId = child.text
            Case "LOGICALADDRESS": p.Address = child.text
            Case "ISPERMANENT": p.Permanent = (child.text = "1")
            Case "VISIBLE": p.Visible = True
            Case "VALUE": p.Value = child.text
            Case "SNVTCOMPATIBILITYLIST": p.List = Split(child.text, ",")
        End Select
        Set child = child.nextSibling
    Loop
    Set ReadPoint = p
End Function

Sub ReadSection(document, path, points, hasType, hasDefault)
    Dim section, child, p
    Set section = document.selectSingleNode(path)
    Set child = section.firstChild
    Do Until child Is Nothing
        Set p = ReadPoint(child)
        If hasType Then ReadType p
        If hasDefault Then If defaults.Exists(p.Name) Then p.DefaultValue = defaults.Item(p.Name)
        points.Add p.Name, p
        Set child = child.nextSibling
    Loop
End Sub

' LoadFromXmlStream
Sub LoadStream(document, text)
    inputs.RemoveAll
    outputs.RemoveAll
    attributes.RemoveAll
    document.loadXML text
    moduleName = document.selectSingleNode("Tam/Name").text
    userName = moduleName
    devKey = document.selectSingleNode("Tam/DevKey").text
    isLast = (document.selectSingleNode("Tam/IsLastOnDev").text = "1")
    objectId = CInt(document.selectSingleNode("Tam/TamObjID").text)
    ReadDefaults
    ReadSection document, "Tam/InReferences", inputs, False, False
    ReadSection document, "Tam/OutReferences", outputs, True, False
    ReadSection document, "Tam/Attributes", attributes, True, True
    inputList = inputs.Items
End Sub

Function Append(document, parent, name)
    Set Append = parent.appendChild(document.createElement(name))
End Function

Sub AppendText(document, parent, name, text)
    Append(document, parent, name).appendChild document.createTextNode(text)
End Sub

Sub ShowOutputs()
    Dim p
    For Each p In outputs.Items
        p.Displayable = True
    Next
End Sub

' XMLSave and XmlLoad
Sub SaveAndLoad(document, parent)
    Dim element, container, p, child, x, y
    Set element = Append(document, parent, "O_Tam_id")
    AppendText document, element, "UserName", userName
    AppendText document, element, "X_Position", "0"
    AppendText document, element, "Y_Position", "0"
    AppendText document, element, "DevKey", devKey
    AppendText document, element, "TamObjID", CStr(objectId)
    Set container = Append(document, element, "Outputs")
    For Each p In outputs.Items
        If p.Displayable Then Append(document, container, p.Name).setAttribute "IsDisplayable", "1"
    Next
    Set child = element.firstChild
    Do Until child Is Nothing
        Select Case UCase(child.baseName)
            Case "USERNAME": userName = child.text
            Case "X_POSITION": x = CDbl(child.text)
            Case "Y_POSITION": y = CDbl(child.text)
            Case "DEVKEY": devKey = child.text
            Case "TAMOBJID": objectId = CInt(child.text)
        End Select
        Set child = child.nextSibling
    Loop
End Sub

' XmlLoad of display flags
Sub LoadFlags(element)
    Dim child
    Set child = element.firstChild.firstChild
    Do Until child Is Nothing
        If child.text = "1" Then outputs.Item(child.baseName).Displayable = True
        Set child = child.nextSibling
    Loop
End Sub

' XMLSaveForInteroperability
Sub SaveInterop(document, parent)
    Dim element, container, node, p
    Set element = Append(document, parent, "O_Tam_id")
    AppendText document, element, "UserName", userName
    AppendText document, element, "Key", ""
    Set container = Append(document, element, "Inputs")
    For Each p In inputs.Items
        Set node = Append(document, container, p.Name)
        AppendText document, node, "Reference", ""
        AppendText document, node, "LogicalAddress", p.Address
        AppendText document, node, "isPermanent", CStr(p.Permanent)
        AppendText document, node, "SNVTType", p.SnvtId
    Next
    Set container = Append(document, element, "Outputs")
    For Each p In outputs.Items
        Set node = Append(document, container, p.Name)
        AppendText document, node, "SNVT_Type", p.SnvtId
        AppendText document, node, "LogicalAddress", p.Address
    Next
    Set container = Append(document, element, "Attributes")
    For Each p In attributes.Items
        Set node = Append(document, container, p.Name)
        AppendText document, node, "Value", p.Value
    Next
End Sub

Function Key(text)
    Key = UCase(text)
    If InStrRev(text, "_") > 0 Then Key = UCase(Left(text, InStrRev(text, "_") - 1))
End Function

Function Flag(value)
    Flag = "0"
    If value Then Flag = "1"
End Function

' Stream
Function Export(document, referenceOfEvery)
    Dim root, container, node, p, referenced, connected
    Set referenced = CreateObject("Scripting.Dictionary")
    Set root = document.appendChild(document.createElement("O_Tam_id"))
    root.setAttribute "DevAddr", ""
    root.setAttribute "AppID", ""
    root.setAttribute "DevKey", devKey
    root.setAttribute "TamObjectID", CStr(objectId)
    root.setAttribute "IsLastOnDev", Flag(isLast)
    Set container = Append(document, root, "Inputs")
    For Each p In inputs.Items
        p.Reference = referenceOfEvery
        connected = (p.Reference <> Left("000000", Len(p.Reference)))
        Set node = Append(document, container, p.Name)
        node.setAttribute "LinkReference", p.Reference
        node.setAttribute "LogicalAddress", p.Address
        node.setAttribute "SNVTType", p.SnvtId
        node.setAttribute "isPermanent", Flag(p.Permanent)
        node.setAttribute "IsConnected", Flag(connected)
        If connected Then referenced.Item(Key(p.Reference)) = True
    Next
    Set container = Append(document, root, "Outputs")
    For Each p In outputs.Items
        Set node = Append(document, container, p.Name)
        node.setAttribute "LogicalAddress", p.Address
        node.setAttribute "SNVTType", p.SnvtId
        node.setAttribute "isMapAsOO", "0"
        node.setAttribute "ObjOffset", ""
        node.setAttribute "AbsoluteObjectIndex", ""
        node.setAttribute "IsConnected", Flag(referenced.Exists(Key(p.Name)))
        node.setAttribute "IsWritable", "0"
    Next
    Set container = Append(document, root, "Attributes")
    For Each p In attributes.Items
        Set node = Append(document, container, p.Name)
        node.setAttribute "LogicalAddress", p.Address
        node.setAttribute "SNVTType", p.SnvtId
        node.setAttribute "Value", p.Value
        node.setAttribute "isPermanent", Flag(p.Permanent)
        node.setAttribute "IsConnected", Flag(Key(p.Name) = "CONFIG" Or referenced.Exists(Key(p.Name)))
    Next
    Export = document.xml
End Function

' Keys set and read
Sub SetKeys(key)
    SetAndRead attributes, key & "\ATT\"
    SetAndRead inputs, key & "\RIN\"
    SetAndRead outputs, key & "\ROU\"
End Sub

Sub SetAndRead(points, side)
    Dim p, text
    For Each p In points.Items
        p.GlobalKey = side & p.Name
        p.ExtendedKey = side & p.Name
    Next
    For Each p In points.Items
        text = p.GlobalKey
        text = p.ExtendedKey
    Next
End Sub

' Look-ups. The texts asked for stand as children of an element.
Dim asked

Sub Ask(element)
    Dim child, count
    ReDim asked(element.childNodes.length - 1)
    count = 0
    Set child = element.firstChild
    Do Until child Is Nothing
        asked(count) = child.text
        count = count + 1
        Set child = child.nextSibling
    Loop
End Sub

Sub LookUpByKey(times)
    Dim i, at, last, p
    at = 0
    last = UBound(asked)
    For i = 1 To times
        Set p = inputs.Item(asked(at))
        If at = last Then at = 0 Else at = at + 1
    Next
End Sub

Sub LookUpByPosition(times)
    Dim i, at, last, p
    at = 0
    last = UBound(asked)
    For i = 1 To times
        Set p = inputList(CLng(asked(at)) - 1)
        If at = last Then at = 0 Else at = at + 1
    Next
End Sub

Sub VisitEach(times)
    Dim p, left
    left = times
    Do While left > 0
        For Each p In inputs.Items
            left = left - 1
            If left = 0 Then Exit For
        Next
    Loop
End Sub

' Reorder by saved order
Sub Reorder(element)
    Dim child, ordered
    Set ordered = CreateObject("Scripting.Dictionary")
    Set child = element.firstChild
    Do Until child Is Nothing
        ordered.Add child.baseName, inputs.Item(child.baseName)
        Set child = child.nextSibling
    Loop
    Set inputs = ordered
    inputList = inputs.Items
End Sub
