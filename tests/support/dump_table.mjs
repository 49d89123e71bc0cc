// Prints a table of a database as the npm package mdb-reader sees it: one JSON array of records.
// node dump_table.mjs FOLDER-OF-NODE_MODULES FILE TABLE PASSWORD
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { resolve } from "node:path";
import { pathToFileURL } from "node:url";

const [modules, file, table, password] = process.argv.slice(2);
const entry = createRequire(resolve(modules, "package.json")).resolve("mdb-reader");
const { default: MDBReader } = await import(pathToFileURL(entry).href);
const reader = new MDBReader(readFileSync(file), { password });
console.log(JSON.stringify(reader.getTable(table).getData()));
