// Usage: node compare.js PROGRAM COUNT [FILE...]
// Compares the texts that PROGRAM, foundation_json_written_texts, has made by write() with those of
// this JavaScript engine: COUNT random doubles and floats, a tenth as many strings and objects, and the
// documents FILE.
// Fails at the first difference.
"use strict";

const assert = require("assert");
const { spawnSync } = require("child_process");
const { readFileSync } = require("fs");

const [program, count, ...files] = process.argv.slice(2);
const seed = process.env.FOUNDATION_JSON_TEST_SEED || String(Date.now() % 1e9);

function fail(message) {
    console.error(`compare.js: ${message} (seed ${seed})`);
    process.exit(1);
}

// What the program writes, as bytes.
function output(...args) {
    const result = spawnSync(program, args, { maxBuffer: 2 ** 32 });
    if (result.error || result.status !== 0) {
        fail(`${program} ${args.join(" ")}: ${result.error || result.stderr}`);
    }
    return result.stdout;
}

// Calls a function for each line, with its columns.
function forEachLine(bytes, compare) {
    let lines = 0;
    for (let begin = 0; begin < bytes.length; ++lines) {
        const end = bytes.indexOf(10, begin);
        const columns = bytes.toString("utf8", begin, end).split("\t");
        compare(...columns);
        begin = end + 1;
    }
    return lines;
}

function expectEqual(text, expected, what) {
    if (text !== expected) {
        fail(`${what} is ${text}, expected ${expected}`);
    }
}

const view = new DataView(new ArrayBuffer(8));

function double(bits) {
    view.setBigUint64(0, BigInt("0x" + bits));
    return view.getFloat64(0);
}

// All characters beyond ASCII and slashes as escapes.
function inAscii(text) {
    return text.replace(/[\u0080-\uffff]/g,
                        (unit) => "\\u" + unit.charCodeAt(0).toString(16).padStart(4, "0"))
        .replace(/\//g, "\\/");
}

// RFC 8785, as it describes itself for JavaScript.
function canonical(value) {
    if (value === null || typeof value !== "object") {
        return JSON.stringify(value);
    }
    const members = Object.keys(value).sort().map(
        (name) => JSON.stringify(name) + ":" + canonical(value[name]));
    return "{" + members.join(",") + "}";
}

function withLetters(value) {
    if (Array.isArray(value)) {
        return value.map(withLetters);
    }
    if (value !== null && typeof value === "object") {
        return Object.fromEntries(
            Object.entries(value).map(([name, member]) => ["k" + name, withLetters(member)]));
    }
    return value === 0 ? 0 : value; // JSON.stringify writes -0 as 0
}

const decoder = new TextDecoder("utf-8", { ignoreBOM: true });

const compare = {
    doubles(bits, text) {
        expectEqual(text, JSON.stringify(double(bits)), `the double ${bits}`);
    },
    floats(bits, text) {
        const number = double(bits);
        if (Math.fround(JSON.parse(text)) !== number) {
            fail(`the float ${number} is ${text}, which is another one`);
        }
        let precision = 1;
        while (Math.fround(Number(number.toPrecision(precision))) !== number) {
            ++precision;
        }
        const digits = text.replace(/e.*/, "").replace(/[-.]/g, "").replace(/^0+|0+$/g, "");
        if (digits.length > precision) {
            fail(`the float ${number} is ${text}, but ${precision} digits suffice`);
        }
        // The notation is that of a double with the same digits.
        expectEqual(text, JSON.stringify(JSON.parse(text)), `the float ${number}`);
    },
    strings(hex, text, ascii) {
        const string = decoder.decode(Buffer.from(hex, "hex"));
        expectEqual(text, JSON.stringify(string), `the string ${hex}`);
        expectEqual(ascii, inAscii(JSON.stringify(string)), `the string ${hex} in ASCII`);
    },
    objects(_, text) {
        expectEqual(text, canonical(JSON.parse(text)), "the canonical text");
    },
};
compare.characters = compare.strings;

const counts = {
    doubles: count,
    floats: count,
    strings: Math.ceil(count / 10),
    objects: Math.ceil(count / 10),
    characters: 60000,
};

for (const [what, line] of Object.entries(compare)) {
    const lines = forEachLine(output(what, seed, String(counts[what])), line);
    console.log(`${lines} ${what} are the same (seed ${seed})`);
    if (lines < counts[what] * 0.9) {
        fail(`too few ${what}`);
    }
}

for (const file of files) {
    const value = withLetters(JSON.parse(readFileSync(file, "utf8")));
    for (const indent of [0, 1, 2, 4, 10, 12]) {
        const text = output("document", file, String(indent)).toString("utf8");
        const read = JSON.parse(text);
        expectEqual(text, JSON.stringify(read, null, indent), `${file} with indent ${indent}`);
        assert.deepStrictEqual(read, value);
    }
    console.log(`${file} is the same`);
}
