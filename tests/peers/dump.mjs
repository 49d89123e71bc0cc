// Prints what mdb-reader finds in a database: a line "T name" for each user table, then one line a row.
// Fields are separated by tabs; \N is Null, and \\ \t \r \n are written so.
//
//     node dump.mjs MODULE_FOLDER FILE
import { readFileSync } from "node:fs";
import { pathToFileURL } from "node:url";

const [folder, file] = process.argv.slice(2);
const { default: MDBReader } = await import(pathToFileURL(`${folder}/mdb-reader/lib/node/index.js`));

const escapes = { "\\": "\\\\", "\t": "\\t", "\r": "\\r", "\n": "\\n" };
const two = (number) => String(number).padStart(2, "0");

function date(value) {
    const day = `${String(value.getUTCFullYear()).padStart(4, "0")}-${two(value.getUTCMonth() + 1)}-${two(value.getUTCDate())}`;
    return `${day} ${two(value.getUTCHours())}:${two(value.getUTCMinutes())}:${two(value.getUTCSeconds())}`;
}

function text(value) {
    if (value === null || value === undefined) return "\\N";
    if (value instanceof Date) return date(new Date(Math.round(value.getTime() / 1000) * 1000));
    if (Buffer.isBuffer(value)) return value.toString("hex");
    if (value === true) return "1";
    if (value === false) return "0";
    return String(value).replace(/[\\\t\r\n]/g, (c) => escapes[c]);
}

const reader = new MDBReader(readFileSync(file));
const lines = [];
for (const name of reader.getTableNames()) {
    lines.push(`T ${name}`);
    const table = reader.getTable(name);
    const columns = table.getColumnNames();
    for (const row of table.getData()) lines.push(columns.map((column) => text(row[column])).join("\t"));
}
process.stdout.write(lines.join("\n") + "\n");
