"""Drives the component from Python, by its interfaces instead of by name.

    py -m pip install comtypes
    py client.py CATALOGUE STREAM PROJECT

A Python of 64 bits finds the DLLs of 64 bits alone, one of 32 bits (py -3-32) those
of 32. The last line is "All right." and the exit status 0 only when every check held.
"""

import os
import re
import sys

import comtypes.client
from comtypes.automation import IEnumVARIANT

# The type libraries are registered with the DLLs; comtypes writes a module of
# wrappers for each.
FACES = comtypes.client.GetModule(("{23539202-4C9D-4BB1-86C0-E65E8B10D209}", 1, 0))

failures = 0


def check(is_right, what):
    global failures
    if not is_right:
        failures += 1
        print("WRONG:", what)


def new_document():
    return comtypes.client.CreateObject("MSXML2.DOMDocument.6.0")


def read_text(path):
    with open(path, encoding="utf-8-sig") as file:
        return file.read()


def read_document(path):
    """From text, which is parsed at once; a declared encoding is no longer its own."""
    document = new_document()
    text = re.sub(r"^<\?xml.*?\?>", "", read_text(path))
    if not document.loadXML(text):
        raise SystemExit(f"{path} is no XML document: {document.parseError.reason}")
    return document


def points_of(collection, interface):
    """The points in order, by the collection's enumerator."""
    for item in collection.NewEnum.QueryInterface(IEnumVARIANT):
        yield item.QueryInterface(interface)


def walk(title, collection, interface):
    """Walks a collection and reaches every point by name as well."""
    seen = 0
    for point in points_of(collection, interface):
        seen += 1
        print(f"{title} {seen}: {point.Name}")
        check(collection.Item[point.Name].Name == point.Name, f"Item of {point.Name}")
        check(collection.Item[str(seen)].Name == point.Name, f"Item at position {seen}")
        check(point.GlobalKey == collection.GlobalKey + "\\" + point.Name, f"key of {point.Name}")
    check(seen == collection.Count, f"the enumerator saw {seen} of {collection.Count}")
    check(not collection.Item["no such point"], "Item of a point that is not there")


def main(catalogue, stream, project):
    # The host's part: the object, its definition, the catalogue, a project.
    module = comtypes.client.CreateObject("O_Tam_id.CDBAppObject", interface=FACES.IAppObject)
    tam = module.QueryInterface(FACES.ITamObject)
    check(module.Init("O_Tam_id"), "Init")
    module.XmlSNVTDoc = read_document(catalogue)
    module.Parent = comtypes.client.CreateObject("OrvHost.Project")

    tam.LoadFromXmlStream(read_text(stream))
    module.GlobalKey = "SHEET1\\MODULE1"
    module.ExtendedKey = "PROJECT\\SHEET1\\MODULE1"
    print(f"Module: {module.UserName}, {module.ProgrammaticID}")

    walk("Input", module.Inputs, FACES.IInput)
    walk("Output", module.Outputs, FACES.IOutput)
    walk("Attribute", module.Attributes, FACES.IAttribute)

    # The first attribute with a number and a unit gets another value.
    for attribute in points_of(module.Attributes, FACES.IAttribute):
        if attribute.SNVTType.GenType == "SignedNumeric":
            print(f"{attribute.Name} was {attribute.Value}, shown as {attribute.DispValue}")
            attribute.Value = "1.5"
            check(module.Attributes.Item[attribute.Name].Value == "1.5", f"value of {attribute.Name}")
            print(f"{attribute.Name} is {attribute.Value}, shown as {attribute.DispValue}")
            break

    # Saved into a project document and loaded again.
    document = new_document()
    root = document.createElement("Project")
    document.appendChild(root)
    module.UserName = "Saved by a script"
    tam.DeviceKey = "K7"
    module.XPosition = 3
    module.XMLSave(root, document)
    document.save(os.path.abspath(project))

    module.UserName = "Something else"
    tam.DeviceKey = ""
    module.XPosition = 0
    module.XmlLoad(read_document(project).documentElement.firstChild)
    check(module.UserName == "Saved by a script", "user name out of the project")
    check(tam.DeviceKey == "K7", "device key out of the project")
    check(module.XPosition == 3, "position out of the project")

    # Exported for the controller.
    image = module.Stream
    print(f"Image: {len(image)} characters, sizes {module.CDBDimension} and {module.DDBDimension}")
    check(image.startswith("4F54494D"), "the image's first bytes")
    module.Destroy()


if __name__ == "__main__":
    if len(sys.argv) != 4:
        raise SystemExit(__doc__)
    main(*sys.argv[1:])
    if failures:
        raise SystemExit(f"{failures} checks failed.")
    print("All right.")
