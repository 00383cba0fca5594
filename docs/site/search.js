// Search without a server, for questions, and for text as it stands in messages and in code.
//
// A page that is opened as a file may neither fetch the index nor start a worker from another file. So
// scripts/docs makes of the index a script, which sets `__index`, and puts the text of the worker's
// script here, as `searchWorker`.
var __search = { index: Promise.resolve(__index) };

// The pages for those who work on the libraries come after those for users.
const isOfTheProject = location =>
    /^(architecture|source_tree|testing|CHANGELOG|CONTRIBUTING)\.html/.test(location);

// Words that make a question of a query, or join its words, are on every page.
const joining = /\b(how|do|does|can|could|should|i|my|me|we|what|which|is|are|a|an|the|of|to|in|into|for|with|on) /gi;

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
        const asked = isQuery && (words.replace(joining, "")
            .replace(/(^| )\p{N}+(?= |$)/gu, "").trim() || words);
        super.postMessage(isQuery ? { ...message, data: asked } : message, ...more);
    }

    // An answer has the results, page by page, the best first.
    addEventListener(type, listener, ...more) {
        super.addEventListener(type, type !== "message" ? listener : event => {
            const pages = event.data?.data?.items;
            pages?.sort((one, other) => isOfTheProject(one[0].location) - isOfTheProject(other[0].location));
            listener.call(this, event);
        }, ...more);
    }
};
