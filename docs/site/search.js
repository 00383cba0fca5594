// Search without a server, and for text as it stands in messages and in code.
//
// A page that is opened as a file may neither fetch the index nor start a worker from another file. So
// scripts/docs makes of the index a script, which sets `__index`, and puts the text of the worker's
// script here, as `searchWorker`.
var __search = {
    index: Promise.resolve(__index),
    // Without the signs that the query language takes as its own.
    transform: (query) => query.replace(/[^\p{L}\p{N}_]+/gu, " ").trim(),
};

if (location.protocol === "file:") {
    const FileWorker = window.Worker;
    window.Worker = class extends FileWorker {
        constructor(url, options) {
            const isSearch = /\/workers\/search\./.test(url);
            const script = new Blob([searchWorker], {type: "text/javascript"});
            super(isSearch ? URL.createObjectURL(script) : url, options);
        }
    };
}
