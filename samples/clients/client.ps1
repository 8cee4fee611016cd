# Drives the component from Windows PowerShell. The 64-bit one finds the DLLs of 64 bits alone, the 32-bit one, in
# SysWOW64, those of 32 bits.
#
#   powershell -File client.ps1 -Catalogue catalogue.xml -Stream channels.xml -Project project.xml
#
# The last line is "All right." and the exit status 0 only when every check held.
param(
    [Parameter(Mandatory)] [string] $Catalogue,
    [Parameter(Mandatory)] [string] $Stream,
    [Parameter(Mandatory)] [string] $Project
)
$ErrorActionPreference = 'Stop'
$script:failures = 0

# Members by name, through IDispatch alone: it offers the members of all interfaces
# of an object, whatever PowerShell's own adapter makes of the type information.
function Call($object, [string] $member, [object[]] $arguments = @()) {
    , [System.__ComObject].InvokeMember($member, [Reflection.BindingFlags]::InvokeMethod, $null, $object, $arguments)
}
function Get($object, [string] $member, [object[]] $arguments = @()) {
    , [System.__ComObject].InvokeMember($member, [Reflection.BindingFlags]::GetProperty, $null, $object, $arguments)
}
function Put($object, [string] $member, $value) {
    [void] [System.__ComObject].InvokeMember($member, [Reflection.BindingFlags]::PutDispProperty, $null, $object, @($value))
}
function PutRef($object, [string] $member, $value) {
    [void] [System.__ComObject].InvokeMember($member, [Reflection.BindingFlags]::PutRefDispProperty, $null, $object, @($value))
}
function Check([bool] $isRight, [string] $what) {
    if (-not $isRight) {
        $script:failures++
        "WRONG: $what"
    }
}
function New-Document {
    $document = New-Object -ComObject MSXML2.DOMDocument.6.0
    $document.async = $false
    $document
}
function Read-Document([string] $path) {
    $document = New-Document
    if (-not $document.load((Resolve-Path $path).Path)) {
        throw "$path is no XML document: $($document.parseError.reason)"
    }
    $document
}

# Walks a collection with foreach and reaches every point by name as well.
function Walk([string] $title, $points) {
    $seen = 0
    foreach ($point in $points) {
        $seen++
        $name = Get $point 'Name'
        "$title ${seen}: $name"
        Check ((Get (Get $points 'Item' @($name)) 'Name') -eq $name) "Item of $name"
        Check ((Get (Get $points 'Item' @("$seen")) 'Name') -eq $name) "Item at position $seen"
        Check ((Get $point 'GlobalKey') -eq (Get $points 'GlobalKey') + '\' + $name) "key of $name"
    }
    Check ($seen -eq (Get $points 'Count')) "foreach saw $seen points"
    Check ($null -eq (Get $points 'Item' @('no such point'))) 'Item of a point that is not there'
}

# The host's part: the object, its definition, the catalogue, a project.
$module = New-Object -ComObject O_Tam_id.CDBAppObject
Check (Call $module 'Init' @('O_Tam_id')) 'Init'
PutRef $module 'XmlSNVTDoc' (Read-Document $Catalogue)
PutRef $module 'Parent' (New-Object -ComObject OrvHost.Project)

[void] (Call $module 'LoadFromXmlStream' @([IO.File]::ReadAllText((Resolve-Path $Stream).Path)))
Put $module 'GlobalKey' 'SHEET1\MODULE1'
Put $module 'ExtendedKey' 'PROJECT\SHEET1\MODULE1'
"Module: $(Get $module 'UserName'), $(Get $module 'ProgrammaticID')"

Walk 'Input' (Get $module 'Inputs')
Walk 'Output' (Get $module 'Outputs')
Walk 'Attribute' (Get $module 'Attributes')

# The first attribute with a number and a unit gets another value.
foreach ($attribute in (Get $module 'Attributes')) {
    if ((Get (Get $attribute 'SNVTType') 'GenType') -eq 'SignedNumeric') {
        $name = Get $attribute 'Name'
        "$name was $(Get $attribute 'Value'), shown as $(Get $attribute 'DispValue')"
        Put $attribute 'Value' '1.5'
        Check ((Get (Get (Get $module 'Attributes') 'Item' @($name)) 'Value') -eq '1.5') "value of $name"
        "$name is $(Get $attribute 'Value'), shown as $(Get $attribute 'DispValue')"
        break
    }
}

# Saved into a project document and loaded again.
$document = New-Document
$root = $document.createElement('Project')
[void] $document.appendChild($root)
Put $module 'UserName' 'Saved by a script'
Put $module 'DeviceKey' 'K7'
Put $module 'XPosition' 3.0
[void] (Call $module 'XMLSave' @($root, $document))
$file = $ExecutionContext.SessionState.Path.GetUnresolvedProviderPathFromPSPath($Project)
$document.save($file)

Put $module 'UserName' 'Something else'
Put $module 'DeviceKey' ''
Put $module 'XPosition' 0.0
[void] (Call $module 'XmlLoad' @((Read-Document $file).documentElement.firstChild))
Check ((Get $module 'UserName') -eq 'Saved by a script') 'user name out of the project'
Check ((Get $module 'DeviceKey') -eq 'K7') 'device key out of the project'
Check ((Get $module 'XPosition') -eq 3) 'position out of the project'

# Exported for the controller.
$image = Get $module 'Stream'
"Image: $($image.Length) characters, sizes $(Get $module 'CDBDimension') and $(Get $module 'DDBDimension')"
Check ($image.StartsWith('4F54494D')) "the image's first bytes"

[void] (Call $module 'Destroy')
if ($script:failures -gt 0) {
    "$($script:failures) checks failed."
    exit 1
}
'All right.'
