// Checks the PowerShell in scripts and documents for syntax.
//
//     node check_powershell.mjs MODULES FILE...
//
// MODULES is the folder with node_modules, which has the parser. Of a document (.md) the samples in PowerShell are read.
// Exits 1 when something is wrong.
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { resolve } from "node:path";

const [modules, ...files] = process.argv.slice(2);
const modulesOf = createRequire(resolve(modules, "node_modules", "one.js"));
const { Language, Parser } = modulesOf("web-tree-sitter");

await Parser.init();
const parser = new Parser();
parser.setLanguage(await Language.load(modulesOf.resolve("tree-sitter-powershell/tree-sitter-powershell.wasm")));

/** The lines of a text, from 1, where something is wrong. */
function faultyLines(text) {
    const lines = new Set();
    const look = (node) => {
        if (node.isError || node.isMissing) {
            lines.add(node.startPosition.row + 1);
        }
        node.children.forEach(look);
    };
    look(parser.parse(text).rootNode);
    return [...lines];
}

/** The scripts of a file: [lines in front of it, text]. */
function scriptsOf(file, text) {
    if (!file.endsWith(".md")) {
        return [[0, text]];
    }
    return [...text.matchAll(/^```powershell\n([^]*?)^```$/gm)].map(
        (block) => [text.slice(0, block.index).split("\n").length, block[1]]);
}

// A parser that takes everything would find nothing.
if (faultyLines("if ($a) { 'b'\n").length === 0 || faultyLines("if ($a) { 'b' }\n").length !== 0) {
    throw new Error("the parser does not tell right from wrong");
}
let scripts = 0;
for (const file of files) {
    for (const [before, text] of scriptsOf(file, readFileSync(file, "utf8"))) {
        scripts += 1;
        for (const line of faultyLines(text)) {
            console.log(`${file}:${before + line}: this is no PowerShell`);
            process.exitCode = 1;
        }
    }
}
if (scripts === 0) {
    throw new Error("there is nothing to check");
}
