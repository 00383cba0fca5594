// Search without a server, for questions, and for text as it stands in messages and in code.
//
// A page that is opened as a file may neither fetch the index nor start a worker from another file. So
// scripts/docs makes of the index a script, which sets `__index`, and puts the text of the worker's
// script here, as `searchWorker`.
var __search = { index: Promise.resolve(__index) };

// What a page is for decides between pages that match a query alike: guides come before the reference,
// unless the query has a name of code, and before the examples; what is for those who work on the libraries comes last.
const weights = [
    [/^(architecture|source_tree|testing|CHANGELOG|CONTRIBUTING)\.html/, 0.01],
    [/^examples\//, 0.3],
    [/^reference\//, 0.3],
];
const weight = (location, ofCode) => ofCode && location.startsWith("reference/") ? 1 :
    (weights.find(([pages]) => pages.test(location)) ?? [null, 1])[1];

// Words that make a question of a query, or join its words, or are everywhere here.
const common = new Set(("how do does can could should i my me we what which is are a an the of to in into for with on " +
    "and json std").split(" "));

window.Worker = class extends window.Worker {
    constructor(url, options) {
        const script = new Blob([searchWorker], { type: "text/javascript" });
        super(location.protocol === "file:" ? URL.createObjectURL(script) : url, options);
    }

    // A query is the only message that is a string. Punctuation would have a meaning in it, and numbers in a
    // message are different each time.
    postMessage(message, ...more) {
        const isQuery = typeof message.data === "string";
        const words = isQuery && message.data.replace(/[^\p{L}\p{N}]+/gu, " ").trim();
        const asked = isQuery && (words.split(" ")
            .filter(word => !common.has(word.toLowerCase()) && !/^\p{N}+$/u.test(word)).join(" ") || words);
        this.ofCode = isQuery ? /_|\(|::/.test(message.data.replace(/std::/g, "")) : this.ofCode;
        super.postMessage(isQuery ? { ...message, data: asked } : message, ...more);
    }

    // An answer has the results, page by page, the best first.
    addEventListener(type, listener, ...more) {
        super.addEventListener(type, type !== "message" ? listener : event => {
            const pages = event.data?.data?.items;
            const score = page => page[0].score * weight(page[0].location, this.ofCode);
            pages?.sort((one, other) => score(other) - score(one));
            listener.call(this, event);
        }, ...more);
    }
};
