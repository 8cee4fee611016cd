"""What the build folders know of one source: which objects read it, how they are compiled, how a program is linked."""

import json
import re
import shlex
import subprocess
from pathlib import Path


def together(source):
    """The sources that a file of the build's compiles together; a source of the project's is one by itself."""
    if not source.match("Unity/unity_*"):
        return [source]
    included = re.findall(r'^#include "([^"]+)"', source.read_text(encoding="utf-8"), re.MULTILINE)
    return [Path(each).resolve() for each in included]


class Build:
    """One configured and finished build folder."""

    def __init__(self, root, folder):
        self.root, self.folder = Path(root), Path(folder)
        entries = json.loads((self.folder / "compile_commands.json").read_text(encoding="utf-8"))
        self.commands = {}
        self.source_of = {}
        self.sources_in = {}
        for entry in entries:
            command = shlex.split(entry["command"])
            if "-o" not in command:
                continue  # a resource
            output = command[command.index("-o") + 1]
            source = Path(entry["directory"], entry["file"]).resolve()
            self.commands[output] = command
            if source.is_relative_to(self.root):
                self.source_of[output] = str(source.relative_to(self.root))
                self.sources_in[output] = [str(each.relative_to(self.root)) for each in together(source)]
        self.readers = {}
        output = None
        for line in self._ninja("deps").splitlines():
            if line and not line[0].isspace():
                output = line.split(":")[0]
            elif line.strip() and output in self.source_of:
                path = (self.folder / line.strip()).resolve()
                if path.is_relative_to(self.root):
                    self.readers.setdefault(str(path.relative_to(self.root)), []).append(output)
        self.links, self.named = {}, {}

    def _ninja(self, tool, *arguments):
        return subprocess.run(["ninja", "-C", str(self.folder), "-t", tool, *arguments],
                              check=True, capture_output=True, text=True).stdout

    def link_of(self, output):
        """The command that links this file, without what is done before and after it."""
        if output not in self.links:
            for line in reversed(self._ninja("commands", output).splitlines()):
                words = shlex.split(line)
                if "-o" in words and words[words.index("-o") + 1] == output:
                    steps = [[]]
                    for word in words:
                        if word == "&&":
                            steps.append([])
                        else:
                            steps[-1].append(word)
                    self.links[output] = next(step for step in steps if output in step)
                    break
            else:
                raise SystemExit(f"mutate: no command links {output}")
        return self.links[output]

    def parts_of(self, output):
        """Every object of the project in a linked file, those of its libraries too."""
        parts = set()
        for word in self.link_of(output):
            library = re.fullmatch(r"(.*?)lib(\w+)\.a", word)
            if word in self.commands:
                parts.add(word)
            elif library:
                folder = f"{library.group(1)}CMakeFiles/{library.group(2)}.dir/"
                parts.update(each for each in self.commands if each.startswith(folder))
        return parts

    def link_includes(self, tree):
        """Beside another tree, the folders of links by which a layer sees another one there."""
        for link in (self.folder / "include").glob("*/*"):
            target = Path(tree).parent / "include" / link.parent.name / link.name
            target.parent.mkdir(parents=True, exist_ok=True)
            target.unlink(missing_ok=True)
            target.symlink_to(Path(tree) / link.resolve().relative_to(self.root))

    def tests_of(self, header):
        """The sources that test a header by itself: those named after it; where few include it, all of those."""
        if not self.named:
            for output, sources in self.sources_in.items():
                texts = [(self.root / each).read_text(encoding="utf-8") for each in sources if each.startswith("tests/")]
                for name in dict.fromkeys(re.findall(r'^#include "([^"]+)"', "\n".join(texts), re.MULTILINE)):
                    self.named.setdefault(name, []).append(output)
        outputs = self.named.get(header, [])
        own = f"/{Path(header).stem}Test.cpp"
        return outputs if len(outputs) <= 3 else [each for each in outputs
                                                  if any(source.endswith(own) for source in self.sources_in[each])]

    def compile_command(self, output, tree, target):
        """The command that compiles an object from the sources in another tree into another file."""
        command, includes = [], self.folder / "include"
        for word in self.commands[output]:
            flag = "-I" if word.startswith("-I") else ""
            path = Path(word[len(flag) :])
            if path.is_relative_to(includes):
                word = flag + str(Path(tree).parent / "include" / path.relative_to(includes))
            elif path.is_absolute() and path.is_relative_to(self.root) and not path.is_relative_to(self.folder):
                word = flag + str(Path(tree) / path.relative_to(self.root))
            command.append(word)
        command[command.index("-o") + 1] = str(target)
        # A changed source may leave something unused: that is no reason against it.
        return command + ["-w"]

    def link_command(self, output, objects, target):
        """The command that links a file with some objects replaced; objects maps each one to its file."""
        words = self.link_of(output)
        own = {object_: str(file) for object_, file in objects.items() if object_ in words}
        # In front of the library that has the same object, which is not taken from there then.
        for_library = [str(file) for object_, file in objects.items() if object_ not in words]
        command = []
        for word in words:
            if word.endswith(".a") and not word.startswith("-"):
                command += for_library
                for_library = []
            elif word.startswith("-Wl,--out-implib,"):
                word = f"-Wl,--out-implib,{target}.a"
            command.append(own.get(word, word))
        command[command.index("-o") + 1] = str(target)
        return command

    def test_link_command(self, output, objects, target):
        """The same for a test program, with the replaced objects in front of all others: an inline function of a
        changed header stands in many objects, of which the linker takes the first."""
        command = self.link_command(output, objects, target)
        front = [word for word in command if word in map(str, objects.values())]
        rest = [word for word in command if word not in front]
        at = next(index for index, word in enumerate(rest) if word in self.commands)
        return rest[:at] + front + rest[at:]
