// Search without a server, and for text as it stands in messages and in code.
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

    // A query is the only message that is a text. Signs would have a meaning in it.
    postMessage(message, ...more) {
        const isQuery = typeof message.data === "string";
        const words = isQuery && message.data.replace(/[^\p{L}\p{N}_]+/gu, " ").trim();
        super.postMessage(isQuery ? { ...message, data: words } : message, ...more);
    }
};
