// Search without a server, for questions, and for text as it stands in messages and in code.
//
// A page that is opened as a file may neither fetch the index nor start a worker from another file. So
// scripts/docs makes of the index a script, which sets `__index`, and puts the text of the worker's
// script here, as `searchWorker`.
var __search = { index: Promise.resolve(__index) };

window.Worker = class extends window.Worker {
    constructor(url, options) {
        const script = new Blob([searchWorker], { type: "text/javascript" });
        super(location.protocol === "file:" ? URL.createObjectURL(script) : url, options);
    }

    // A query is the only message that is a text. Signs would have a meaning in it, the words that only
    // make a question of it are on every page, and numbers in a message are different each time.
    postMessage(message, ...more) {
        const isQuery = typeof message.data === "string";
        const words = isQuery && message.data.replace(/[^\p{L}\p{N}_]+/gu, " ").trim();
        const asked = isQuery && (words
            .replace(/\b(how|do|does|can|should|i|my|what|which|a|an|the|of) /gi, "")
            .replace(/(^| )\p{N}+(?= |$)/gu, "").trim() || words);
        super.postMessage(isQuery ? { ...message, data: asked } : message, ...more);
    }
};
